// The project's own tables: every rule of the stem table is needed by some word,
// and the stop list keeps to what it promises.

#include <fstream>
#include <set>
#include <sstream>

#include "Storage/StorageTestSupport.h"
#include "Token.h"
#include "Token/TkSourceReader.h"
#include "Token/TkStopTable.h"

namespace vandrelle {
namespace {

const std::string kTables = VANDRELLE_SOURCE_DIR "/table/";

class Tables : public DirectoryTest {
 protected:
  Tables() {
    TkManager::CreateTables((kTables + "stem.src").c_str(), (directory_ / "stem.tbl").c_str(),
                            (kTables + "stop.src").c_str(), (directory_ / "stop").c_str());
    stemmer_.reset(
        TkManager::Stemmer((directory_ / "stem.tbl").c_str(), (directory_ / "stop").c_str()));
  }

  std::string stem(const char* word) {
    WmLocalWord place;
    std::ostringstream os;
    os << *stemmer_->stem(WmLocalWord(word).word(), place.word());
    return os.str();
  }

  std::unique_ptr<TkStemmerImpl> stemmer_;
};

TEST_F(Tables, EveryRuleIsNeeded) {
  std::set<std::string> shown;
  std::ifstream examples(VANDRELLE_TEST_DATA "/stem_examples.txt");
  for (std::string rule, word, expected; examples >> rule >> word >> expected;) {
    std::ostringstream os;
    stemmer_->explain(WmLocalWord(word.c_str()).word(), os);
    EXPECT_NE(os.str().find("  rule " + rule + ": "), std::string::npos) << rule << ' ' << os.str();
    EXPECT_EQ(stem(word.c_str()), expected);
    shown.insert(rule);
  }
  std::ifstream is(kTables + "stem.src");
  TkSourceReader reader(&is);
  while (reader.next()) EXPECT_EQ(shown.count(reader.token()), 1u) << reader.token();
}

TEST_F(Tables, FormsThatMeetAndWordsThatDoNot) {
  const std::vector<std::vector<const char*>> families = {
      {"connect", "connects", "connected", "connecting", "connection", "connections"},
      {"stop", "stops", "stopped", "stopping", "stopper"},
      {"hope", "hopes", "hoped", "hoping"},
      {"happy", "happier", "happiest", "happily", "happiness"},
      {"relate", "relates", "related", "relating", "relation", "relations", "relative"},
      {"apply", "applies", "applied", "applying"},
      {"fly", "flies", "flying"},
      {"woman", "women", "woman's"},
      {"organize", "organizer", "organization", "organizations"},
      {"read", "reads", "reader", "readers", "reading", "readable", "readability"},
      {"agree", "agreed", "agrees", "agreeing", "agreement"},
      {"process", "processes", "processing", "processed"}};
  std::set<std::string> stems;
  for (const auto& family : families) {
    for (const char* word : family) EXPECT_EQ(stem(word), stem(family[0])) << word;
    EXPECT_TRUE(stems.insert(stem(family[0])).second) << family[0];
  }
  const char* const apart[][2] = {
      {"universe", "university"}, {"number", "numb"}, {"news", "new"},  {"master", "mast"},
      {"tense", "ten"},           {"apply", "apple"}, {"reply", "rep"}, {"feed", "fee"}};
  for (const auto& [one, other] : apart) {
    EXPECT_NE(stem(one), stem(other)) << one;
  }
}

// Replacements are not looked up again.
TEST_F(Tables, NoReplacementIsAStopWord) {
  std::ifstream is(kTables + "stop.src");
  TkStopTable table((directory_ / "stop").c_str());
  for (std::string word, replacement; is >> word >> replacement;) {
    WmLocalWord data("?");
    EXPECT_EQ(table.stop(WmLocalWord(word.c_str()).word(), data.word()), 1) << word;
    if (data->valid()) {
      EXPECT_EQ(table.stop(data.word(), nullptr), 0) << word;
    }
  }
}

}  // namespace
}  // namespace vandrelle
