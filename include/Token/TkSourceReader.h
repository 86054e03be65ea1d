// Reads the text sources of the stem and stop tables: tokens between white space,
// with the line that each stands on, so that a fault can be told with its place.
#pragma once

#include <iosfwd>
#include <string>

namespace vandrelle {

// What is wrong with a source. Without a token the fault is the whole file's.
struct TkSourceFault {
  int line = 0;  // from 1
  std::string token;
  std::string reason;  // a clause without a full stop
};

class TkSourceReader {
 public:
  // Of a longer token, which nothing accepts, this many characters are kept.
  static constexpr std::size_t kMaxToken = 255;

  explicit TkSourceReader(std::istream* is) : is_(is) {}

  // The next token and its line; false at the end, and when the stream turns bad: a
  // folder can be opened, but not read.
  bool next();
  const std::string& token() const { return token_; }
  int line() const { return tokenLine_; }

  TkSourceFault unreadable() const { return {line_, "", "the file cannot be read"}; }
  TkSourceFault fault(const std::string& reason) const { return {tokenLine_, token_, reason}; }

 private:
  std::istream* is_;
  std::string token_;
  int line_ = 1;
  int tokenLine_ = 1;
};

}  // namespace vandrelle
