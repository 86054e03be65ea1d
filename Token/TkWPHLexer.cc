#include "Token/TkWPHLexer.h"

#include "Token/TkException.h"

namespace vandrelle {

TkWPHLexer::TkWPHLexer(TkLexer* lexer, TkStemmer* stemmer, TkWordPairHash* hash)
    : lexer_(lexer), stemmer_(stemmer), hash_(hash) {
  if (lexer == nullptr || stemmer == nullptr || hash == nullptr) {
    THROW(Tk, "Lexer, stemmer, or hash argument to WPHLexer constructor is NULL.  Please fix.");
  }
}

void TkWPHLexer::reset() {
  firstWord_ = 1;
  currBuf_[0] = 0;
  prevBuf_[0] = 0;
  TkSimpleTextLexer::reset();
  lexer_->reset();
}

WmWord* TkWPHLexer::word() {
  const WmWord* raw = lexer_->word();
  if (raw == nullptr) return nullptr;
  WmLocalWord place;
  const WmWord* stem = stemmer_->stem(raw, place.word());
  if (!stem->valid()) {
    if (hashStopSeparatedWords_ == 0) firstWord_ = 1;
    return nullptr;
  }
  new (currBuf_) WmWord(*stem);
  WmWord* pair = hash_->hash(reinterpret_cast<WmWord*>(prevBuf_),
                             reinterpret_cast<WmWord*>(currBuf_), reinterpret_cast<WmWord*>(buf_));
  updateWordBufs(raw);
  if (firstWord_ == 0) return pair;
  firstWord_ = 0;
  return nullptr;
}

void TkWPHLexer::updateWordBufs(const WmWord* raw) {
  new (prevBuf_) WmWord(*reinterpret_cast<WmWord*>(currBuf_));
  new (currBuf_) WmWord(*raw);
}

}  // namespace vandrelle
