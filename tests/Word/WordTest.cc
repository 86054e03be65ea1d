#include "Word.h"

#include <gtest/gtest.h>

#include <sstream>

#include "MagicWord.h"
#include "ThrownBy.h"

namespace vandrelle {
namespace {

std::string text(const WmWord& word) {
  std::ostringstream os;
  os << word;
  return os.str();
}

TEST(Word, BytesAreLengthThenFoldedLetters) {
  char place[8];
  std::memset(place, '#', sizeof place);
  const WmWord* word = new (place) WmWord("aZ@[9");
  EXPECT_EQ(std::string(place, 8), "\005az@[9##");
  EXPECT_EQ(word->num_bytes(), 6);
  new (place) WmWord("aZ@[9", 1);
  EXPECT_EQ(std::string(place, 8), "\005aZ@[9##");
  for (int c = 0; c < 256; ++c) {
    const char expected = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : static_cast<char>(c);
    EXPECT_EQ(WmWord::AsciiToWm(static_cast<char>(c)), expected) << c;
  }
}

TEST(Word, SixtyFourLettersFitAndNoMore) {
  char place[65];
  const auto making = [&](const std::string& letters) {
    return thrownBy([&] { new (place) WmWord(letters.c_str()); });
  };
  EXPECT_EQ(making(std::string(64, 'x')), "");
  EXPECT_EQ(static_cast<unsigned char>(place[0]), 64);
  EXPECT_EQ(making(std::string(65, 'x')), "WmWordTooLarge: Word has too many letters");
  EXPECT_EQ(making(""), "");
  EXPECT_FALSE(reinterpret_cast<WmWord*>(place)->valid());
}

TEST(Word, Collation) {
  struct {
    const char *left, *right;
    int sign;
  } cases[] = {{"ab", "abc", -1}, {"abc", "ab", 1},  {"ab", "ab", 0},    {"", "a", -1},
               {"b", "abc", 1},   {"z", "\xe9", -1}, {"a'b", "aab", -1}, {"", "", 0},
               {"9z", "a", -1},   {"abc", "abd", -1}};
  for (const auto& c : cases) {
    const WmLocalWord left(c.left), right(c.right);
    const int order = WmWord::cmp(*left, *right);
    EXPECT_EQ((order > 0) - (order < 0), c.sign) << c.left << " " << c.right;
    EXPECT_EQ(*left == *right, c.sign == 0);
    EXPECT_EQ(WmWord::FdCompareWords(left.word(), 1, right.word(), 99), order);
    EXPECT_EQ(WmMagicWord(*left) < WmMagicWord(*right), c.sign < 0);
    EXPECT_EQ(WmMagicWord(*left) == *right, c.sign == 0);
  }
}

TEST(MagicWord, SharesAndReleases) {
  WmMagicWord a("Word");
  {
    WmMagicWord b(a);
    EXPECT_EQ(a.word(), b.word());
    b = b.word();  // from inside its own buffer
    EXPECT_NE(a.word(), b.word());
    EXPECT_EQ(a, b);
    b = a;
    b = *&b;
    EXPECT_EQ(a.word(), b.word());
  }
  EXPECT_EQ(text(*a), "word");
  const WmMagicWord none(static_cast<const WmWord*>(nullptr));
  EXPECT_FALSE(none.valid());
  EXPECT_EQ(none.word(), nullptr);
  EXPECT_TRUE(none < a && none == WmMagicWord() && none != *a);
  // Words are compared whole, where the collation ends at a NUL.
  WmMagicWord b("word");
  a->rawletter(1, '\0');
  b->rawletter(1, '\0');
  EXPECT_EQ(a, b);
  b->rawletter(2, 'x');
  EXPECT_TRUE(a != b && *a != *b);
  a = none;
  EXPECT_FALSE(a.valid());
}

}  // namespace
}  // namespace vandrelle
