#include <sstream>
#include <string_view>

#include "Storage/StorageTestSupport.h"
#include "TestLog.h"
#include "Tool/BitField.h"
#include "Tool/GetLine.h"
#include "Tool/MD5.h"
#include "Tool/RegularExpression.h"
#include "Tool/oprintf.h"

namespace vandrelle {
namespace {

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

std::string md5(const std::string& text, unsigned step) {
  MD5 digest;
  for (std::size_t at = 0; at < text.size(); at += step) {
    const std::string part = text.substr(at, step);
    digest.update(static_cast<const void*>(part.data()), static_cast<unsigned>(part.size()));
  }
  unsigned char bytes[MD5::kDigestBytes];
  digest.final(bytes);
  return hex(std::string(reinterpret_cast<char*>(bytes), sizeof bytes));
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

TEST(oprintf, NegativeStarsAreAFlagAndNoPrecision) {
  std::ostringstream os;
  os << oprintf("[%*d][%.*s][%.*e]", -4, 7, -2, "text", -1, 1.5);
  EXPECT_EQ(os.str(), "[7   ][text][1.500000e+00]");
}

TEST(GetLine, LongLinesComeInPieces) {
  std::istringstream is("abc\n\nabcdefgh\nabcdefg\nxy");
  std::string pieces;
  char buffer[8];
  while (getline(&is, buffer, sizeof buffer, '\n')) pieces += std::string("[") + buffer + "]";
  EXPECT_EQ(pieces, "[abc][][abcdefg][h][abcdefg][xy]");
  EXPECT_STREQ(buffer, "");
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
  const TestLog log;
  const RegularExpression broken("*x");
  ASSERT_EQ(log.lines().size(), 1u);
  EXPECT_EQ(log.lines()[0].find("The regular expression \"*x\" does not compile"), 2u);
}

}  // namespace
}  // namespace vandrelle
