// A compiled regular expression, searched for anywhere in a text.
//
// Bytes count as Latin-1 characters, and `.` matches a newline too. Matching takes
// time linear in the text, also on hostile pages. An expression that does not
// compile never matches; the log names it once, when it is made.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace re2 {
class RE2;
}

namespace vandrelle {

class RegularExpression {
 public:
  // Null counts as an expression that does not compile.
  explicit RegularExpression(const char* expression, bool ignoreCase = false);
  ~RegularExpression();
  RegularExpression(const RegularExpression&) = delete;
  RegularExpression& operator=(const RegularExpression&) = delete;

  // Did it compile?
  bool valid() const { return compiled_ != nullptr; }

  // Number of bracketed groups; 0 if invalid.
  int numGroups() const;

  // Is there a match anywhere in `text`?
  bool matches(std::string_view text) const;

  // The leftmost match at or behind byte `from`: `groups[0]` gets the whole match,
  // `groups[i]` the i-th bracketed group, as parts of `text`; a group that took no
  // part has a null data(). False, with `groups` untouched, if there is none.
  bool search(std::string_view text, std::size_t from, std::string_view* groups,
              int numGroups) const;

 private:
  std::unique_ptr<re2::RE2> compiled_;
};

}  // namespace vandrelle
