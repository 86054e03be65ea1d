#include "Token/TkWordPair.h"

#include <algorithm>

#include "Token/CharacterClass.h"

namespace vandrelle {

namespace {

constexpr int kLetterBits = 5;

}  // namespace

TkWordPairHashImpl::TkWordPairHashImpl(int hashbits)
    : hashbits_(std::clamp(hashbits, kLetterBits, 32)) {}

WmWord* TkWordPairHashImpl::hash(const WmWord* w1, const WmWord* w2, WmWord* place) {
  static constexpr char kHashLetters[] = "abcdefghijklmnopqrstuvwxyz012345678";
  const int total = w1->num_letters() + w2->num_letters();
  std::uint32_t hash = 0;
  for (int i = 0; i < total; ++i) {
    const char letter = i < w1->num_letters() ? w1->letter(i) : w2->letter(i - w1->num_letters());
    // Spreads the letters evenly over the bits, however many there are.
    const int shift = (i * (hashbits_ - kLetterBits) + total / 2) / total;
    hash ^= letterCode(letter) << shift;
  }
  const int letters = (hashbits_ + kLetterBits - 1) / kLetterBits + 1;
  place->num_letters(letters);
  for (int i = letters - 1; i > 0; --i) {
    place->letter(i, kHashLetters[hash & 31]);
    hash >>= kLetterBits;
  }
  place->letter(0, ' ');
  return place;
}

std::uint32_t TkWordPairHashImpl::letterCode(char letter) {
  if (character_class::isLetter(letter)) {
    return static_cast<std::uint32_t>(WmWord::AsciiToWm(letter) - 'a');
  }
  if (letter == '-') return 26;
  if (letter == '\'') return 27;
  return character_class::isDigit(letter) ? 28 : 29;
}

WmWord* TkCompleteWordPair::hash(const WmWord* w1, const WmWord* w2, WmWord* place) {
  constexpr int kMost = 15;
  int letters = 0;
  for (int i = 0; i < std::min(w1->num_letters(), kMost); ++i) {
    place->letter(letters++, w1->letter(i));
  }
  place->letter(letters++, ' ');
  for (int i = 0; i < std::min(w2->num_letters(), kMost); ++i) {
    place->letter(letters++, w2->letter(i));
  }
  place->num_letters(letters);
  return place;
}

}  // namespace vandrelle
