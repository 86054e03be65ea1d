#include "Tool/RegularExpression.h"

#include <re2/re2.h>

#include <algorithm>
#include <vector>

#include "Tool/VandrelleLog.h"

namespace vandrelle {

RegularExpression::RegularExpression(const char* expression, bool ignoreCase) {
  if (expression == nullptr) return;
  re2::RE2::Options options(re2::RE2::Latin1);
  options.set_dot_nl(true);
  options.set_log_errors(false);
  options.set_case_sensitive(!ignoreCase);
  auto compiled = std::make_unique<re2::RE2>(expression, options);
  if (compiled->ok()) {
    compiled_ = std::move(compiled);
  } else {
    LOG(0, 1,
        "The regular expression \"" << expression << "\" does not compile: " << compiled->error());
  }
}

RegularExpression::~RegularExpression() = default;

int RegularExpression::numGroups() const {
  return valid() ? compiled_->NumberOfCapturingGroups() : 0;
}

bool RegularExpression::matches(std::string_view text) const { return search(text, 0, nullptr, 0); }

bool RegularExpression::search(std::string_view text, std::size_t from, std::string_view* groups,
                               int numGroups) const {
  if (!valid() || from > text.size()) return false;
  // A group beyond those of the expression stays null.
  const int asked = std::min(numGroups, compiled_->NumberOfCapturingGroups() + 1);
  constexpr int kUsual = 16;
  re2::StringPiece usual[kUsual];
  std::vector<re2::StringPiece> many;
  re2::StringPiece* found = usual;
  if (asked > kUsual) {
    many.resize(static_cast<std::size_t>(asked));
    found = many.data();
  }
  const re2::StringPiece piece(text.data(), text.size());
  if (!compiled_->Match(piece, from, text.size(), re2::RE2::UNANCHORED, found, asked)) {
    return false;
  }
  for (int i = 0; i < numGroups; ++i) {
    groups[i] = i < asked ? std::string_view(found[i].data(), found[i].size()) : std::string_view();
  }
  return true;
}

}  // namespace vandrelle
