#include "Token/TkSourceReader.h"

#include <istream>
#include <streambuf>

#include "Token/CharacterClass.h"

namespace vandrelle {

bool TkSourceReader::next() {
  using Traits = std::istream::traits_type;
  std::streambuf* from = is_->rdbuf();
  token_.clear();
  for (;;) {
    const Traits::int_type got = from->sgetc();
    if (Traits::eq_int_type(got, Traits::eof())) return !token_.empty();
    const char c = Traits::to_char_type(got);
    if (character_class::isSpace(c)) {
      if (!token_.empty()) return true;
      if (c == '\n') ++line_;
    } else {
      if (token_.empty()) tokenLine_ = line_;
      if (token_.size() < kMaxToken) token_ += c;
    }
    from->sbumpc();
  }
}

}  // namespace vandrelle
