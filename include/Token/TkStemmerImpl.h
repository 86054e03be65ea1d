// The stemmer of words that are searched: contractions, stop words, a policy for
// numbers, then suffix rules.
#pragma once

#include <iosfwd>
#include <memory>

#include "Token/TkStemTable.h"
#include "Token/TkStemmer.h"
#include "Token/TkStopLookup.h"

namespace vandrelle {

class TkStemmerImpl final : public TkStemmer {
 public:
  // The bits of numberPolicy(). Without any, numbers are words like others.
  enum { kStopNumbers = 1, kLimitDigits = 2, kLimitNumbers = 4 };

  // Without a stop table (null) nothing is stopped, numbers neither.
  TkStemmerImpl(std::unique_ptr<TkStemTable> stemtable, std::unique_ptr<TkStopLookup> stoptable)
      : stemtable_(std::move(stemtable)), stoptable_(std::move(stoptable)) {}

  // `word` has at most 63 letters; more are left out.
  WmWord* stem(const WmWord* word, WmWord* place) override;
  // Tells on lines of its own what becomes of a word, and why.
  void explain(const WmWord* word, std::ostream& os);

  int numberPolicy() const { return numberPolicy_; }
  void numberPolicy(int bits) { numberPolicy_ = bits; }
  // The digits that kLimitDigits allows in any word, and kLimitNumbers in a pure
  // number.
  int maxDigits() const { return maxDigits_; }
  void maxDigits(int digits) { maxDigits_ = digits; }
  int maxNumberLength() const { return maxNumberLength_; }
  void maxNumberLength(int digits) { maxNumberLength_ = digits; }

 private:
  int preStem(const WmWord* word, char* stembuf);
  static int removeContractions(const WmWord* word, char* stembuf);
  int stopSub(const WmWord* word, WmWord* replace);
  bool stopsAsNumber(const WmWord* word) const;

  std::unique_ptr<TkStemTable> stemtable_;
  std::unique_ptr<TkStopLookup> stoptable_;
  int numberPolicy_ = kLimitDigits | kLimitNumbers;
  int maxDigits_ = 4;
  int maxNumberLength_ = 4;
};

}  // namespace vandrelle
