#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Tool/BitField.h"
#include "Tool/FastBitVector.h"
#include "Tool/GetLine.h"
#include "Tool/MD5.h"
#include "Tool/Random.h"
#include "Tool/RegularExpression.h"
#include "Tool/ToolException.h"
#include "Tool/VandrelleLog.h"
#include "Tool/VdString.h"
#include "Tool/oprintf.h"

namespace vandrelle {
namespace {

template <typename Action>
std::string thrownBy(Action action) {
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    action();
    return "nothing";
  }
  environment.restore_env();
  std::unique_ptr<Exception> caught(ExceptionManager::instance()->pop());
  return std::string(caught->name()) + ": " + caught->message();
}

TEST(BitField, RunsMaySpanTwoBytes) {
  const unsigned char data[] = {0x80, 0x01};
  EXPECT_EQ(BitField::get(data, 7, 2), 3);
  EXPECT_EQ(BitField::get(data, 0, 8), 0x80);
  EXPECT_EQ(BitField::get(data, 4, 8), 0x18);
  EXPECT_EQ(BitField::get(data + 1, 0, 0), 0);
  EXPECT_EQ(thrownBy([&] { BitField::get(data, 0, 9); }),
            "BitField: Can't select bitfields larger than 8");
  std::ostringstream os;
  os << BitField::Printer(data, 6, 4);
  EXPECT_EQ(os.str(), "0110");
}

TEST(BitField, PutLeavesTheOtherBits) {
  for (int start = 0; start < 16; ++start) {
    for (int len = 0; len <= 8 && start + len <= 16; ++len) {
      for (const int ground : {0x00, 0xff}) {
        std::vector<unsigned char> data(2, static_cast<unsigned char>(ground));
        BitField::put(data.data(), start, len, 0xa5);
        for (int bit = 0; bit < 16; ++bit) {
          const int expected =
              bit >= start && bit < start + len ? 0xa5 >> (bit - start) & 1 : ground & 1;
          ASSERT_EQ(data[static_cast<std::size_t>(bit / 8)] >> bit % 8 & 1, expected);
        }
      }
    }
  }
}

TEST(BitField, CopiesAnyNumberOfBits) {
  unsigned char source[8];
  for (int i = 0; i < 8; ++i) source[i] = static_cast<unsigned char>(i * 37 + 11);
  for (const int bits : {0, 1, 8, 9, 16, 33}) {
    unsigned char target[8] = {};
    BitField::copy(source, 5, target, 3, bits);
    for (int i = 0; i < 61; ++i) {
      EXPECT_EQ(BitField::get(target, 3 + i, 1), i < bits ? BitField::get(source, 5 + i, 1) : 0);
    }
  }
}

TEST(FastBitVector, BitsCountFromTheLowOne) {
  FastBitVector bits(10);
  bits.bit(0, 1);
  bits.bit(9, 7);
  EXPECT_EQ(bits.bits()[0], 1);
  EXPECT_EQ(bits.bits()[1], 2);
  bits.bit(0, 0);
  std::ostringstream os;
  bits.dump(os);
  EXPECT_EQ(os.str(), "0000000001");
  EXPECT_EQ(thrownBy([&] { bits.bit(10); }).substr(0, 10), "BitVector:");
  u_char place[2] = {0xff, 0xff};
  FastBitVector over(9, place);
  EXPECT_EQ(over.bit(8), 1);
  over.clear();
  EXPECT_EQ(place[1], 0);
}

std::string md5(const std::string& text, unsigned step) {
  MD5 digest;
  for (std::size_t at = 0; at < text.size(); at += step) {
    const std::string part = text.substr(at, step);
    digest.update(static_cast<const void*>(part.data()), static_cast<unsigned>(part.size()));
  }
  unsigned char bytes[MD5::kDigestBytes];
  digest.final(bytes);
  std::string hex;
  for (const unsigned char byte : bytes) {
    char two[3];
    std::snprintf(two, sizeof two, "%02x", byte);
    hex += two;
  }
  return hex;
}

// The test suite of RFC 1321, A.5.
TEST(MD5, KnownDigests) {
  const char* const cases[][2] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
       "d174ab98d277d9f5a5611c2c9f419d9f"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
  };
  for (const auto& [text, digest] : cases) {
    for (const unsigned step : {1u, 7u, 64u, 1000u}) EXPECT_EQ(md5(text, step), digest);
  }
}

TEST(VdString, CopiesShareUntilOneIsChanged) {
  VdString text("root");
  VdString copy(text);
  EXPECT_EQ(static_cast<const char*>(text), static_cast<const char*>(copy));
  copy += ".suffix";
  EXPECT_STREQ(text, "root");
  EXPECT_STREQ(copy, "root.suffix");
  copy += copy;
  text = copy;
  text = static_cast<const VdString&>(text);
  copy = "other";
  EXPECT_STREQ(text, "root.suffixroot.suffix");
  EXPECT_STREQ(VdString(nullptr), "");
}

TEST(Random, BoundsAreKept) {
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(Random::integer(5, 5), 5);
    const int number = Random::integer(-1, 1);
    EXPECT_TRUE(number >= -1 && number <= 1);
    EXPECT_LT(Random::integer(3), 3);
    const float real = Random::real(2, 4);
    EXPECT_TRUE(real >= 2 && real <= 4);
  }
  EXPECT_EQ(Random::integer(0), 0);
  Random::seed(42);
  const int first = Random::integer(1000000);
  Random::seed(42);
  EXPECT_EQ(Random::integer(1000000), first);
}

TEST(GetLine, LongLinesComeInPieces) {
  std::istringstream is("abc\n\nabcdefgh\nabcdefg\nxy");
  std::string pieces;
  char buffer[8];
  while (getline(&is, buffer, sizeof buffer, '\n')) pieces += std::string("[") + buffer + "]";
  EXPECT_EQ(pieces, "[abc][][abcdefg][h][abcdefg][xy]");
  EXPECT_STREQ(buffer, "");
}

TEST(oprintf, FormatsLikePrintf) {
  std::ostringstream os;
  os << std::hex << oprintf("%d|%5u|%-5i|%05d|%x|%X|%o|%c", -3, 7u, 12, -42, 255, -1, 8, 'c');
  EXPECT_EQ(os.str(), "-3|    7|12   |-0042|ff|FFFFFFFF|10|c");
  os.str("");
  os << oprintf("%.2E %6.1f %g %s %.2s %*d 100%% \\t\\\\ %s %d", 12345.678, 2.25, 0.5, "text",
                "text", 4, 9, static_cast<const char*>(nullptr));
  EXPECT_EQ(os.str(), "1.23E+04    2.2 0.5 text te    9 100% \t\\ (null) ");
  os.str("");
  os << 17 << oprintf("%") << oprintf("\\");
  EXPECT_EQ(os.str(), "11\\");
}

TEST(RegularExpression, SearchesAnywhere) {
  struct {
    const char* expression;
    const char* text;
    bool found;
  } const cases[] = {
      {"\\.html$", "dir/page.html", true},
      {"\\.html$", "page.html.bak", false},
      {"a.b", "xa\nb", true},
      {"^$", "", true},
      {"[\xe0-\xff]", "caf\xe9", true},
      {"(", "(", false},
      {"", "anything", true},
      {"A", "a", false},
  };
  for (const auto& given : cases) {
    EXPECT_EQ(RegularExpression(given.expression).matches(given.text), given.found)
        << given.expression;
  }
  EXPECT_TRUE(RegularExpression("A", true).matches("a"));
  EXPECT_FALSE(RegularExpression(nullptr).valid());

  const RegularExpression pair("(\\w+)=(x)?(\\d*)");
  const std::string_view text = "a= key=12";
  std::string_view groups[5];
  ASSERT_TRUE(pair.search(text, 2, groups, 5));
  EXPECT_EQ(groups[0], "key=12");
  EXPECT_EQ(groups[1], "key");
  EXPECT_EQ(groups[2].data(), nullptr);
  EXPECT_EQ(groups[3], "12");
  EXPECT_EQ(groups[4].data(), nullptr);
  EXPECT_FALSE(pair.search(text, 10, groups, 5));
}

TEST(RegularExpression, LogNamesWhatDoesNotCompile) {
  std::ostringstream said;
  VandrelleLogIostream log(&said);
  VandrelleLog::Logger(&log);
  const RegularExpression broken("*x");
  VandrelleLog::Logger(nullptr);
  EXPECT_EQ(said.str().find("The regular expression \"*x\" does not compile"), 0u);
  EXPECT_EQ(said.str().find('\n'), said.str().size() - 1);
}

}  // namespace
}  // namespace vandrelle
