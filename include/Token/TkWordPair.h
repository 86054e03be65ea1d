// Words made of two adjacent stems, so that pairs can be indexed like words.
#pragma once

#include "Word.h"

namespace vandrelle {

class TkWordPairHash {
 public:
  virtual ~TkWordPairHash() = default;

  // Makes the word of the pair in `place`, 64 bytes, and answers it.
  virtual WmWord* hash(const WmWord* w1, const WmWord* w2, WmWord* place) = 0;
};

// A pair as a number of some bits, spelled in letters behind a blank, with which
// no lexer's word can begin.
class TkWordPairHashImpl final : public TkWordPairHash {
 public:
  // `hashbits` from 5 to 32; values beyond are taken as the nearer of the two.
  explicit TkWordPairHashImpl(int hashbits);

  WmWord* hash(const WmWord* w1, const WmWord* w2, WmWord* place) override;

 private:
  static std::uint32_t letterCode(char letter);

  int hashbits_;
};

// A pair spelled out: up to 15 letters of each word, with a blank between them.
class TkCompleteWordPair final : public TkWordPairHash {
 public:
  WmWord* hash(const WmWord* w1, const WmWord* w2, WmWord* place) override;
};

}  // namespace vandrelle
