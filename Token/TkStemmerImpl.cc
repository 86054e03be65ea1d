#include "Token/TkStemmerImpl.h"

#include <algorithm>
#include <cstring>
#include <ostream>

#include "Token/CharacterClass.h"

namespace vandrelle {

namespace {

constexpr int kMaxLetters = TkStemTable::kStemBuffer - 1;

// Room for any word, whatever its length byte says; the empty word at first.
struct WordRoom {
  char bytes[256];
  WordRoom() { bytes[0] = 0; }
  WmWord* word() { return reinterpret_cast<WmWord*>(bytes); }
};

int copyLetters(const WmWord* word, char* stembuf) {
  const int length = std::min(word->num_letters(), kMaxLetters);
  std::memcpy(stembuf, word->letters(), static_cast<std::size_t>(length));
  return length;
}

}  // namespace

WmWord* TkStemmerImpl::stem(const WmWord* word, WmWord* place) {
  char stembuf[TkStemTable::kStemBuffer];
  if (preStem(word, stembuf) != 0) return stemtable_->stem(place, stembuf);
  return place != nullptr ? new (place) WmWord("") : WmWord::Create("");
}

void TkStemmerImpl::explain(const WmWord* word, std::ostream& os) {
  os << *word << '\n';
  char stembuf[TkStemTable::kStemBuffer];
  int length = removeContractions(word, stembuf);
  stembuf[length] = '\0';
  WordRoom bare, replace;
  new (bare.bytes) WmWord(stembuf);
  if (length == 0 && word->valid()) {
    os << "  a contraction that is left out\n";
  } else if (length != std::min(word->num_letters(), kMaxLetters)) {
    os << "  without its apostrophe: " << stembuf << '\n';
  }
  if (length != 0 && stopSub(bare.word(), replace.word()) != 0) {
    length = copyLetters(replace.word(), stembuf);
    stembuf[length] = '\0';
    const bool listed = stoptable_->stop(bare.word(), nullptr) != 0;
    if (length != 0) {
      os << "  stop table, indexed as: " << stembuf << '\n';
    } else if (listed) {
      os << "  stop word\n";
    } else if (stopsAsNumber(bare.word())) {
      os << "  too many digits\n";
    } else {
      os << "  too short, or begins with a mark\n";
    }
  }
  if (length != 0) {
    stemtable_->explain(stembuf, os);
    os << "  stem: " << stembuf << '\n';
  } else {
    os << "  not indexed\n";
  }
}

int TkStemmerImpl::preStem(const WmWord* word, char* stembuf) {
  int length = removeContractions(word, stembuf);
  if (length == 0) return 0;
  stembuf[length] = '\0';
  WordRoom shortened, replace;
  if (length != word->num_letters()) {
    new (shortened.bytes) WmWord(stembuf);
    word = shortened.word();
  }
  if (stopSub(word, replace.word()) != 0) {
    length = copyLetters(replace.word(), stembuf);
    stembuf[length] = '\0';
  }
  return length;
}

// The letters that remain, which are copied to `stembuf`; 0 for a word that is
// all contraction.
int TkStemmerImpl::removeContractions(const WmWord* word, char* stembuf) {
  const int length = copyLetters(word, stembuf);
  const int lastchar = length - 1;
  if (lastchar < 2) return length;
  const char ch = stembuf[lastchar], p1 = stembuf[lastchar - 1], p2 = stembuf[lastchar - 2];
  if (ch == '\'') return lastchar;
  if (p1 == '\'' && ch == 's') return lastchar - 1;
  if (p1 == '\'' && ch == 'd') return 0;
  if (p2 == '\'' && ch == 'e' && (p1 == 'v' || p1 == 'r')) return 0;
  if (p2 == '\'' && p1 == 'l' && ch == 'l') return 0;
  if (p2 == 'n' && p1 == '\'' && ch == 't') return 0;
  return length;
}

// Non-zero if `word` is stopped; its replacement, or the invalid word, is then in
// `replace`, if that is given.
int TkStemmerImpl::stopSub(const WmWord* word, WmWord* replace) {
  if (stoptable_ == nullptr) return 0;
  if (word->num_letters() <= 1 || word->letter(0) == '*' || word->letter(0) == '-' ||
      stopsAsNumber(word)) {
    if (replace != nullptr) replace->makeInvalid();
    return 1;
  }
  return stoptable_->stop(word, replace);
}

bool TkStemmerImpl::stopsAsNumber(const WmWord* word) const {
  if (numberPolicy_ == 0) return false;
  int digits = 0;
  bool pureNumber = true;
  for (int i = 0; i < word->num_letters(); ++i) {
    if (!character_class::isDigit(word->letter(i))) {
      pureNumber = false;
      continue;
    }
    ++digits;
    if ((numberPolicy_ & kLimitDigits) != 0 && digits > maxDigits_) return true;
  }
  if (!pureNumber) return false;
  return (numberPolicy_ & kStopNumbers) != 0 ||
         ((numberPolicy_ & kLimitNumbers) != 0 && digits > maxNumberLength_);
}

}  // namespace vandrelle
