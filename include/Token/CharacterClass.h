// Character classes of the C locale, defined for bytes below 0x80 whatever the
// locale of the process; bytes from 0x80 on belong to no class.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace vandrelle::character_class {

enum : std::uint8_t {
  kLetter = 1,
  kDigit = 2,
  kSpace = 4,
  kLineBreak = 8,
  kMark = 16,
  kQuote = 32
};

struct Table {
  std::uint8_t bits[256]{};
  constexpr Table() {
    for (int c = 'a'; c <= 'z'; ++c) bits[c] = bits[c - 'a' + 'A'] = kLetter;
    for (int c = '0'; c <= '9'; ++c) bits[c] = kDigit;
    for (int c : {' ', '\t', '\v', '\f'}) bits[c] = kSpace;
    for (int c : {'\n', '\r'}) bits[c] = kSpace | kLineBreak;
    for (int c : {'.', '?', '!'}) bits[c] = kMark;
    for (int c : {'\'', '"'}) bits[c] = kQuote;
  }
};
inline constexpr Table kTable;

inline bool has(char c, int bits) {
  return (kTable.bits[static_cast<unsigned char>(c)] & bits) != 0;
}
inline bool isLetter(char c) { return has(c, kLetter); }
inline bool isDigit(char c) { return has(c, kDigit); }
inline bool isAlphanumeric(char c) { return has(c, kLetter | kDigit); }
inline bool isSpace(char c) { return has(c, kSpace); }
inline bool isLineBreak(char c) { return has(c, kLineBreak); }
// `.`, `?` and `!`
inline bool isSentenceMark(char c) { return has(c, kMark); }
// Does `c` keep a sentence mark before it alive: white space and quotes.
inline bool isSpaceOrQuote(char c) { return has(c, kSpace | kQuote); }
inline bool isHigh(char c) { return static_cast<signed char>(c) < 0; }

}  // namespace vandrelle::character_class
