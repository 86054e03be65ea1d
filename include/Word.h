// Words: the form of every term in memory and on disk.
//
//   offset  size          content
//   0       1             number of letters, unsigned; 0 is the invalid word
//   1       num_letters   the letters, no terminating zero
//
// A WmWord is exactly these bytes: no virtual operations, no padding, alignment
// 1. So a pointer to any such run of bytes (a lexer's buffer, a key of a key
// file) can be used as a WmWord*, and a word can be compared, hashed, copied
// and written without conversion. Words are not made as local variables: they
// are constructed in place over a buffer that is long enough, or by Create();
// WmLocalWord is the buffer and the word in one.
#pragma once

#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <new>

#include "Exception.h"

namespace vandrelle {

EXCEPTION_FAMILY(Wm);
EXCEPTION_FAMILY_1(WmWord, Wm);
EXCEPTION_FAMILY_1(WmWordTooLarge, WmWord);
EXCEPTION_FAMILY_1(WmLocalWord, Wm);

class WmWord {
 public:
  // The most letters that a string may have to become a word.
  static constexpr int kMaxLetters = 64;

  // From a zero-terminated string, its letters folded to lower case. Null counts
  // as empty. Throws _Exception_WmWordTooLarge for more than kMaxLetters.
  explicit WmWord(const char* string) { init(string, 0); }
  // As above; a `raw` that is not zero keeps the letters unfolded.
  WmWord(const char* string, int raw) { init(string, raw); }
  // The bytes of `other`, which may be this very word.
  WmWord(const WmWord& other) { std::memmove(bytes(), other.bytes(), other.storedSize()); }
  WmWord& operator=(const WmWord&) = delete;

  // A new word that the caller owns and releases with `delete`; null if memory
  // is out. Null or empty strings give the invalid word.
  static WmWord* Create(const char* string);
  static WmWord* Create(const WmWord& word);

  // Only into a buffer of the caller's: the size of a word depends on its text.
  static void* operator new(std::size_t) = delete;
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* word) { ::operator delete(word); }
  static void operator delete(void*, void*) noexcept {}

  // The bytes that a word takes, in memory and on disk.
  static int BytesRequired(int letters) { return letters + 1; }
  static int BytesRequired(const WmWord& word) { return word.num_bytes(); }
  static int BytesRequired(const char* string) {
    return string == nullptr ? 1 : static_cast<int>(std::strlen(string)) + 1;
  }

  // The collation of every sorted table: negative, 0 or positive as `w1` is
  // before, equal to or behind `w2`. Letters compare as unsigned bytes; a word
  // stands before its own extensions (-1 and 1 in that case).
  static int cmp(const WmWord* w1, const WmWord* w2);
  static int cmp(const WmWord& w1, const WmWord& w2) { return cmp(&w1, &w2); }

  // cmp() with the signature by which bags and streams sort; sizes are ignored.
  static int FdCompareWords(const void* k1, int, const void* k2, int) {
    return cmp(static_cast<const WmWord*>(k1), static_cast<const WmWord*>(k2));
  }

  // `A` to `Z` become `a` to `z`, all else stays.
  static char AsciiToWm(char c) { return AsciiToWmTable[static_cast<unsigned char>(c)]; }

  bool operator==(const WmWord& other) const {
    return numLetters_ == other.numLetters_ &&
           std::memcmp(dataStart_, other.dataStart_, numLetters_) == 0;
  }
  bool operator!=(const WmWord& other) const { return !(*this == other); }

  int num_letters() const { return numLetters_; }
  void num_letters(int letters) { numLetters_ = static_cast<std::uint8_t>(letters); }
  int num_bytes() const { return numLetters_ + 1; }

  // Letter `i` counts from 0; below num_letters() to read, within the buffer to
  // store. letter() folds what it stores, rawletter() does not.
  char letter(int i) const { return dataStart_[i]; }
  void letter(int i, char c) { dataStart_[i] = AsciiToWm(c); }
  void rawletter(int i, char c) { dataStart_[i] = c; }

  // The letters, num_letters() of them, not terminated.
  const char* letters() const { return dataStart_; }

  bool valid() const { return numLetters_ != 0; }
  void makeInvalid() { numLetters_ = 0; }

  static const char AsciiToWmTable[256];

 private:
  void init(const char* string, int raw);
  std::size_t storedSize() const { return std::size_t{numLetters_} + 1; }
  char* bytes() { return reinterpret_cast<char*>(this); }
  const char* bytes() const { return reinterpret_cast<const char*>(this); }

  std::uint8_t numLetters_;
  char dataStart_[];
};
static_assert(sizeof(WmWord) == 1 && alignof(WmWord) == 1);

// The letters of `word`, one by one, and nothing else.
std::ostream& operator<<(std::ostream& os, const WmWord& word);

inline int WmWord::cmp(const WmWord* w1, const WmWord* w2) {
  const std::uint8_t length1 = w1->numLetters_;
  const std::uint8_t length2 = w2->numLetters_;
  const int order =
      std::strncmp(w1->dataStart_, w2->dataStart_, length1 < length2 ? length1 : length2);
  if (order != 0) return order;
  return length1 == length2 ? 0 : length1 < length2 ? -1 : 1;
}

// A word with its own room, for local variables and members.
class WmLocalWord {
 public:
  WmLocalWord() { buffer_[0] = 0; }
  explicit WmLocalWord(const char* string, int raw = 0) { new (buffer_) WmWord(string, raw); }
  // Throws _Exception_WmLocalWord if `word` has more than WmWord::kMaxLetters.
  explicit WmLocalWord(const WmWord& word);
  WmLocalWord(const WmLocalWord&) = default;
  WmLocalWord& operator=(const WmLocalWord&) = default;

  WmWord* word() { return reinterpret_cast<WmWord*>(buffer_); }
  const WmWord* word() const { return reinterpret_cast<const WmWord*>(buffer_); }
  WmWord* operator->() { return word(); }
  const WmWord* operator->() const { return word(); }
  WmWord& operator*() { return *word(); }
  const WmWord& operator*() const { return *word(); }

 private:
  char buffer_[WmWord::kMaxLetters + 1];
};

}  // namespace vandrelle
