#include <map>
#include <sstream>

#include "Storage/StorageTestSupport.h"
#include "Token.h"
#include "Token/TkStemTable.h"
#include "Token/TkStemmerImpl.h"

namespace vandrelle {
namespace {

using namespace std::string_literals;

class Stemming : public DirectoryTest {
 protected:
  // The bytes of the table of a source, or the text of the throw.
  std::string compiled(const std::string& source) const {
    writeFile(directory_ / "source", source);
    const std::string thrown = thrownBy([&] {
      TkStemTable::createTable((directory_ / "source").c_str(), (directory_ / "table").c_str());
    });
    return thrown.empty() ? fileBytes(directory_ / "table") : thrown;
  }

  std::unique_ptr<TkStemTable> tableOf(const std::string& source) const {
    compiled(source);
    return std::make_unique<TkStemTable>((directory_ / "table").c_str());
  }

  static std::string stem(const TkStemTable& table, const std::string& word) {
    char buffer[TkStemTable::kStemBuffer] = {}, place[64];
    word.copy(buffer, sizeof buffer - 1);
    std::ostringstream os;
    os << *table.stem(reinterpret_cast<WmWord*>(place), buffer);
    return os.str();
  }
};

TEST_F(Stemming, TableBytes) {
  const std::string ssss = "sei\0\0\0\003y\0\x40\0\0"s, s = "s\0\0\0\0\0\001\0\0\x30\0\0"s;
  EXPECT_EQ(compiled("sei3y.\n s*1>"), "\x2c\x10\x04\x06ssss"s + ssss + s + "\0\0\0\0"s);
  EXPECT_EQ(compiled("abcdef2xy>?"),
            "\x22\xf0\x04\x03"
            "aaaaabcdef\002xy\xa8\0\0\0\0\0\0"s);
  // Letters in front of the digit are kept, but do not count.
  EXPECT_EQ(compiled("a*b2c").substr(8, 12), "a\0\0\0\0\0\002bc\x50\0\0"s);
  EXPECT_EQ(compiled(""), "\0\0\0\0"s);
}

TEST_F(Stemming, RefusedRules) {
  const std::string group = "a1. a2. a3. a4. a5. a6. a7. a8. a9. a0. ";
  const std::string long39 = "abcdef1" + std::string(32, '.');
  const struct {
    std::string source;
    bool refused;
  } cases[] = {{"abcdefg1.", true},    {"ab#1.", true},
               {"a1\xe9", true},       {"a1'", true},
               {"a2xyz", true},        {"a1. b1. a2.", true},
               {group + group, false}, {group + group + "a1.", true},
               {long39, false},        {long39 + ".", true},
               {"'1. >", false}};
  for (const auto& c : cases) {
    EXPECT_EQ(compiled(c.source) == "TkStemmer: Invalid rule found during creation.", c.refused)
        << c.source;
  }
}

TEST_F(Stemming, Rules) {
  const auto table = tableOf(
      "a*1. "
      "de2> "
      "gni3> gn*2ny. "
      "noit4t> "
      "s1> sei3y. ss0. ssen4> "
      "tt1. "
      "y'1. "
      "yl2? yt2. y1i>");
  const struct {
    const char *word, *stem;
  } cases[] = {// The rules of two letters come before that of one.
               {"berries", "berry"},
               {"arms", "arm"},
               {"miss", "miss"},
               // In the order of the source: -ness is never reached behind -ss.
               {"happiness", "happiness"},
               // Words of three letters are left alone, stems of three need a vowel in front.
               {"sos", "sos"},
               {"cats", "cats"},
               {"ponies", "ponie"},
               {"fly", "fly"},
               // Except where the rule allows them.
               {"madly", "mad"},
               // One rule after the other, as long as enough letters remain.
               {"singings", "sing"},
               {"relations", "relat"},
               {"rations", "ration"},
               {"stations", "station"},
               // Only while untouched.
               {"pizza", "pizz"},
               {"areas", "area"},
               // No letter among the last two.
               {"b2bs", "b2bs"},
               {"abc2s", "abc2s"},
               {"wordy's", "wordy's"},
               {"", ""}};
  for (const auto& c : cases) EXPECT_EQ(stem(*table, c.word), c.stem) << c.word;
}

// Rules that never end, or that only add, end all the same.
TEST_F(Stemming, CirclesEnd) {
  const auto table = tableOf("a0> b0bb> c1d> d1c>");
  EXPECT_EQ(stem(*table, "lambda"), "lambda");
  EXPECT_EQ(stem(*table, "club").substr(0, 6), "clubbb");
  EXPECT_LE(stem(*table, std::string(62, 'b')).size(), 63u);
  EXPECT_EQ(stem(*table, "mosaic").size(), 6u);
}

TEST_F(Stemming, DamagedTables) {
  const std::string whole = compiled("a*1. de2> gni3> noit4t> s1> sei3y. ss0. tion3xy> y1i> yl2?");
  const std::string damage = directory_ / "damaged";
  std::unique_ptr<TkStemTable> table;
  const auto loads = [&](const std::string& bytes) {
    writeFile(damage, bytes);
    const std::string thrown =
        thrownBy([&] { table = std::make_unique<TkStemTable>(damage.c_str()); });
    if (!thrown.empty()) {
      EXPECT_EQ(thrown, "TkStemmer: The stemmer rules file is damaged: " + damage);
      return false;
    }
    for (const char* word : {"singings", "ponies", "nations", "aaaaa", "lyly", "xxyi"}) {
      stem(*table, word);
    }
    return true;
  };
  EXPECT_TRUE(loads(whole));
  EXPECT_FALSE(loads(whole + '\0'));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(loads(whole.substr(0, length))) << length;
  }
  for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
    // The sizes and the key of the first group, and the first letter of its first rule.
    const bool checked = bit / 8 >= 2 && bit / 8 < 9;
    EXPECT_FALSE(loads(flipped(whole, bit / 8, 1 << bit % 8)) && checked)
        << bit / 8 << ' ' << bit % 8;
  }
  std::string three = whole;
  three[8 + 9] = static_cast<char>(three[8 + 9] | 0xc0);
  EXPECT_FALSE(loads(three));
}

class MapStop : public TkStopLookup {
 public:
  int stop(const WmWord* word, WmWord* data) override {
    const auto found =
        entries_.find({word->letters(), static_cast<std::size_t>(word->num_letters())});
    if (found == entries_.end()) return 0;
    if (data != nullptr) new (data) WmWord(found->second);
    return 1;
  }

 private:
  const std::map<std::string, const char*, std::less<>> entries_ = {
      {"the", ""}, {"indices", "indexes"}, {"7up", "lemonades"}};
};

TEST_F(Stemming, StopWordsNumbersContractions) {
  const std::string source = "s1> se2>";
  const struct {
    const char* word;
    int policy;
    const char* stem;
  } cases[] = {{"the", 6, ""},          {"the's", 6, ""},      {"a", 6, ""},
               {"-abc", 6, ""},         {"*abcs", 6, ""},      {"dogs", 6, "dogs"},
               {"indices", 6, "index"}, {"7up", 6, "lemonad"}, {"can't", 6, ""},
               {"we've", 6, ""},        {"they're", 6, ""},    {"we'll", 6, ""},
               {"he'd", 6, ""},         {"dog's", 6, "dog"},   {"horses'", 6, "hors"},
               {"it'x", 6, "it'x"},     {"n't", 6, ""},        {"'s", 6, "'s"},
               {"1996", 6, "1996"},     {"19960", 6, ""},      {"19960", 0, "19960"},
               {"b2b", 6, "b2b"},       {"abc12345", 6, ""},   {"abc12345", 4, "abc12345"},
               {"12345", 4, ""},        {"12345", 2, ""},      {"123", 1, ""},
               {"123x", 1, "123x"},     {"1a2b3c4d5e", 2, ""}};
  TkStemmerImpl stopping(tableOf(source), std::make_unique<MapStop>());
  TkStemmerImpl plain(tableOf(source), nullptr);
  for (const auto& c : cases) {
    stopping.numberPolicy(c.policy);
    char place[64] = "old";
    std::ostringstream os;
    os << *stopping.stem(WmLocalWord(c.word).word(), reinterpret_cast<WmWord*>(place));
    EXPECT_EQ(os.str(), c.stem) << c.word;
  }
  // In the place of the word itself, and in a new one.
  for (const auto& [word, expected] :
       {std::pair{"a", "a"}, {"19960", "19960"}, {"apples", "appl"}}) {
    WmLocalWord in(word);
    const std::unique_ptr<WmWord> made(plain.stem(in.word(), nullptr));
    EXPECT_EQ(*made, *WmLocalWord(expected));
    EXPECT_EQ(*plain.stem(in.word(), in.word()), *made);
  }
  const std::unique_ptr<WmWord> none(stopping.stem(WmLocalWord("the").word(), nullptr));
  EXPECT_FALSE(none->valid());
}

}  // namespace
}  // namespace vandrelle
