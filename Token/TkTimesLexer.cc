#include "Token/TkTimesLexer.h"

namespace vandrelle {

TkTimesLexer::TkTimesLexer()
    : leadWord_(WmWord::Create("ld")),
      textWord_(WmWord::Create("te")),
      f7_(WmWord::Create("f7")),
      o7_(WmWord::Create("o7")) {}

WmWord* TkTimesLexer::word() {
  if (word_ == 0) return nullptr;
  buf_[0] = static_cast<char>(current_);
  auto* word = reinterpret_cast<WmWord*>(buf_);
  const bool marker = *word == *leadWord_ || *word == *textWord_ || *word == *f7_ || *word == *o7_;
  return marker ? nullptr : word;
}

}  // namespace vandrelle
