// The project's own tables: every rule of the stem table is needed by some word,
// and the stop list keeps to what it promises.

#include <gtest/gtest.h>

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

const struct {
  const char *rule, *word, *stem;
} kExamples[] = {
    {"bb1?>", "robbed", "rob"},
    {"dei2?>", "carried", "carri"},
    {"dew2?>", "rowed", "row"},
    {"dex2?>", "taxed", "tax"},
    {"dey2?>", "played", "play"},
    {"dee1.", "agreed", "agree"},
    {"dee0.", "need", "need"},
    {"de1?>", "robbed", "rob"},
    {"dd1?>", "wedding", "wed"},
    {"elbay4?>", "payable", "pay"},
    {"elba4>", "readable", "read"},
    {"elba4e?>", "movable", "move"},
    {"elbi4>", "flexible", "flex"},
    {"ee0.", "employee", "employee"},
    {"e1>", "robbed", "rob"},
    {"gnirts0.", "strings", "string"},
    {"gnirps0.", "springs", "spring"},
    {"gniy3?>", "buying", "buy"},
    {"gniw3?>", "sewing", "sew"},
    {"gnix3?>", "boxing", "box"},
    {"gnie3?>", "seeing", "see"},
    {"gni3>", "adding", "add"},
    {"gni3e?>", "hoping", "hope"},
    {"gg1?>", "begging", "beg"},
    {"htei3>", "twentieth", "twenti"},
    {"htn2>", "seventh", "seven"},
    {"itilib5le>", "readability", "read"},
    {"itisre0.", "universities", "universiti"},
    {"iti3>", "activities", "act"},
    {"ilba4>", "readably", "read"},
    {"ilba4e?>", "capably", "cape"},
    {"ilbi4>", "possibly", "poss"},
    {"ilb1>", "humbly", "humbl"},
    {"ilgg1>", "giggly", "giggl"},
    {"ilzz1>", "drizzly", "drizzl"},
    {"ilpp0.", "applied", "appli"},
    {"ilper0.", "reply", "repli"},
    {"ilpit0.", "multiply", "multipli"},
    {"ill2>", "finally", "final"},
    {"ill0.", "bully", "bulli"},
    {"il2?>", "nicely", "nice"},
    {"kk1?>", "trekked", "trek"},
    {"laci2>", "logical", "logic"},
    {"ll1?>", "calling", "cal"},
    {"mm1?>", "swimming", "swim"},
    {"noi3>", "relation", "relat"},
    {"ne2>", "weaken", "weak"},
    {"nn1?>", "running", "run"},
    {"pp1?>", "stopped", "stop"},
    {"rebmun0.", "numbers", "number"},
    {"renroc0.", "corners", "corner"},
    {"retsam0.", "masters", "master"},
    {"rettel0.", "letters", "letter"},
    {"rettam0.", "matters", "matter"},
    {"rettub0.", "butter", "butter"},
    {"remmus0.", "summers", "summer"},
    {"rennid0.", "dinners", "dinner"},
    {"rewolf0.", "flowers", "flower"},
    {"retnec0.", "centers", "center"},
    {"retnuo0.", "counters", "counter"},
    {"retrau0.", "quarters", "quarter"},
    {"ree0.", "engineer", "engineer"},
    {"rota2>", "creator", "creat"},
    {"rei2?>", "drier", "dri"},
    {"rey2?>", "player", "play"},
    {"rew2?>", "lower", "low"},
    {"rex2?>", "mixer", "mix"},
    {"re1?>", "walker", "walk"},
    {"rr1?>", "referred", "refe"},
    {"swen0.", "news", "news"},
    {"sei2?>", "universities", "universiti"},
    {"ssen4?>", "kindness", "kind"},
    {"ss0.", "possibly", "poss"},
    {"su0.", "bonus", "bonus"},
    {"si0.", "tennis", "tennis"},
    {"sex2?>", "boxes", "box"},
    {"s*1?>", "strings", "string"},
    {"tsew3?>", "newest", "new"},
    {"tsey3?>", "coyest", "coy"},
    {"tsex3?>", "laxest", "lax"},
    {"tse2?>", "greatest", "great"},
    {"tnemil0.", "compliments", "compliment"},
    {"tnemy4?>", "payments", "pay"},
    {"tnem4>", "agreement", "agree"},
    {"tacifi3>", "classification", "classifi"},
    {"tacilp3>", "multiplication", "multipli"},
    {"tazi2>", "organization", "organiz"},
    {"tt1?>", "sitting", "sit"},
    {"vi2>", "activities", "act"},
    {"vv1?>", "revved", "rev"},
    {"ya0.", "played", "play"},
    {"ye0.", "monkey", "monkey"},
    {"yo0.", "enjoyment", "enjoy"},
    {"y1i?>", "readability", "read"},
    {"zz1?>", "buzzing", "buz"},
};

class Tables : public testing::Test {
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

  TestDirectory directory_;
  std::unique_ptr<TkStemmerImpl> stemmer_;
};

TEST_F(Tables, EveryRuleIsNeeded) {
  std::set<std::string> shown;
  for (const auto& example : kExamples) {
    std::ostringstream os;
    stemmer_->explain(WmLocalWord(example.word).word(), os);
    EXPECT_NE(os.str().find(std::string("  rule ") + example.rule + ": "), std::string::npos)
        << example.rule << ' ' << os.str();
    EXPECT_EQ(stem(example.word), example.stem);
    shown.insert(example.rule);
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
  for (const auto& [one, other] :
       std::vector<std::pair<const char*, const char*>>{{"universe", "university"},
                                                        {"number", "numb"},
                                                        {"news", "new"},
                                                        {"master", "mast"},
                                                        {"tense", "ten"},
                                                        {"apply", "apple"},
                                                        {"reply", "rep"},
                                                        {"feed", "fee"}}) {
    EXPECT_NE(stem(one), stem(other)) << one;
  }
}

TEST_F(Tables, TheStopListIsSound) {
  std::ifstream is(kTables + "stop.src");
  TkSourceFault fault;
  EXPECT_TRUE(TkStopTable::checkSource(is, &fault)) << fault.line << ' ' << fault.token;
  TkStopTable table((directory_ / "stop").c_str());
  is.clear();
  is.seekg(0);
  TkSourceReader reader(&is);
  int words = 0;
  while (reader.next()) {
    ++words;
    const std::string word = reader.token();
    ASSERT_TRUE(reader.next());
    WmLocalWord data("?");
    EXPECT_EQ(table.stop(WmLocalWord(word.c_str()).word(), data.word()), 1);
    std::ostringstream os;
    os << *data;
    EXPECT_EQ(os.str(), reader.token() == "*" ? "" : reader.token()) << word;
    // A replacement is not looked up again.
    if (reader.token() != "*") {
      EXPECT_EQ(table.stop(data.word(), nullptr), 0) << word;
    }
  }
  EXPECT_GE(words, 300);
  EXPECT_LE(words, 450);
}

}  // namespace
}  // namespace vandrelle
