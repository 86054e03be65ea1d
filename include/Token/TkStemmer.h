// From a lexer's word to the word that is indexed and searched.
#pragma once

#include "Word.h"

namespace vandrelle {

class TkStemmer {
 public:
  virtual ~TkStemmer() = default;

  // The stem of `word`: in `place` (64 bytes, which may be `word` itself) if
  // that is given, else in a new word that the caller owns. An invalid word
  // stands for a word that is not to be indexed.
  virtual WmWord* stem(const WmWord* word, WmWord* place) = 0;
};

// The null stemmer: every word is its own stem.
class TkPassStem final : public TkStemmer {
 public:
  WmWord* stem(const WmWord* word, WmWord* place) override;
};

}  // namespace vandrelle
