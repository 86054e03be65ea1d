#include "Token/TkSourceReader.h"

#include <cstdio>
#include <istream>

#include "Token/CharacterClass.h"

namespace vandrelle {

bool TkSourceReader::next() {
  token_.clear();
  for (;;) {
    const int got = is_->peek();
    if (got == EOF) return !token_.empty() && !is_->bad();
    const char c = static_cast<char>(got);
    if (character_class::isSpace(c)) {
      if (!token_.empty()) return true;
      if (c == '\n') ++line_;
    } else {
      if (token_.empty()) tokenLine_ = line_;
      if (token_.size() < kMaxToken) token_ += c;
    }
    is_->get();
  }
}

}  // namespace vandrelle
