#include "Word.h"

#include <ostream>

namespace vandrelle {

#define ROW(n)                                                                           \
  char(n), char(n + 1), char(n + 2), char(n + 3), char(n + 4), char(n + 5), char(n + 6), \
      char(n + 7), char(n + 8), char(n + 9), char(n + 10), char(n + 11), char(n + 12),   \
      char(n + 13), char(n + 14), char(n + 15)
// Bytes from 0x80 on never pass through this table on the way from a text: the
// lexers replace or drop them before.
const char WmWord::AsciiToWmTable[256] = {
    ROW(0),   ROW(16),  ROW(32),  ROW(48),  '@',      'a',      'b',      'c',
    'd',      'e',      'f',      'g',      'h',      'i',      'j',      'k',
    'l',      'm',      'n',      'o',      'p',      'q',      'r',      's',
    't',      'u',      'v',      'w',      'x',      'y',      'z',      '[',
    '\\',     ']',      '^',      '_',      ROW(96),  ROW(112), ROW(128), ROW(144),
    ROW(160), ROW(176), ROW(192), ROW(208), ROW(224), ROW(240)};
#undef ROW

void WmWord::init(const char* string, int raw) {
  numLetters_ = 0;
  if (string == nullptr || *string == '\0') return;
  const std::size_t length = std::strlen(string);
  if (length > kMaxLetters) THROW(WmWordTooLarge, "Word has too many letters");
  numLetters_ = static_cast<std::uint8_t>(length);
  if (raw != 0) {
    std::memcpy(dataStart_, string, length);
    return;
  }
  for (std::size_t i = 0; i < length; ++i) dataStart_[i] = AsciiToWm(string[i]);
}

WmWord* WmWord::Create(const char* string) {
  // The invalid word gets room for a few letters, not its one byte.
  constexpr std::size_t kEmptySize = 4;
  const std::size_t size =
      string == nullptr || *string == '\0' ? kEmptySize : std::strlen(string) + 1;
  if (size > kMaxLetters + 1) THROW(WmWordTooLarge, "Word has too many letters");
  void* place = ::operator new(size, std::nothrow);
  return place == nullptr ? nullptr : new (place) WmWord(string);
}

WmWord* WmWord::Create(const WmWord& word) {
  void* place = ::operator new(word.storedSize(), std::nothrow);
  return place == nullptr ? nullptr : new (place) WmWord(word);
}

WmLocalWord::WmLocalWord(const WmWord& word) {
  if (word.num_letters() > WmWord::kMaxLetters) {
    THROW(WmLocalWord, "Word has too many letters for a local word: " << word.num_letters());
  }
  new (buffer_) WmWord(word);
}

std::ostream& operator<<(std::ostream& os, const WmWord& word) {
  for (int i = 0; i < word.num_letters(); ++i) os << word.letter(i);
  return os;
}

}  // namespace vandrelle
