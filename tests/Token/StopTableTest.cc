#include <sstream>

#include "KeyFile/KfKeyFileManager.h"
#include "SmallDevice.h"
#include "Storage/StorageTestSupport.h"
#include "Token.h"
#include "Token/TkSourceReader.h"
#include "Token/TkStopTable.h"

namespace vandrelle {
namespace {

// What a table answers: "(none)", "" for a plain stop word, or the replacement.
std::string stopped(TkStopTable& table, const char* word) {
  WmLocalWord data("before");
  const int found = table.stop(WmLocalWord(word, 1).word(), data.word());
  EXPECT_EQ(table.stop(WmLocalWord(word, 1).word(), nullptr), found);
  std::ostringstream os;
  os << *data;
  EXPECT_TRUE(found != 0 || os.str() == "before");
  return found == 0 ? "(none)" : os.str();
}

class TkStopTableTest : public DirectoryTest {
 protected:
  const std::string source = directory_ / "stop.src", table = directory_ / "stop";
};

TEST_F(TkStopTableTest, FromSourceToAnswers) {
  writeFile(source,
            "And *\nbe\tis\n  indices indexes the * they' *\nthem * a-far * zoos zoo\n lonely");
  testing::internal::CaptureStdout();
  TkStopTable::createTable(source.c_str(), table.c_str());
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Key out of order, left out: them\nKey out of order, left out: a-far\n");
  TkStopTable loaded(table.c_str());
  const struct {
    const char *word, *answer;
  } cases[] = {{"and", ""},          {"be", "is"},      {"indices", "indexes"}, {"the", ""},
               {"they'", ""},        {"zoos", "zoo"},   {"a-far", "(none)"},    {"them", "(none)"},
               {"lonely", "(none)"}, {"And", "(none)"}, {"", "(none)"},         {"thee", "(none)"}};
  for (const auto& c : cases) EXPECT_EQ(stopped(loaded, c.word), c.answer) << c.word;
}

TEST_F(TkStopTableTest, Refusals) {
  const auto creating = [&](const std::string& content) {
    writeFile(source, content);
    return thrownBy([&] { TkStopTable::createTable(source.c_str(), table.c_str()); });
  };
  const std::string badType = "IO: Bad file type - must pass in a flat file: " + source;
  for (const char* content : {"", " a *", "1a *", "* a"}) EXPECT_EQ(creating(content), badType);
  EXPECT_EQ(creating("a *\n9b *"), "KdInit: Key must begin with a letter: 9b");
  EXPECT_NE(creating("a * b" + std::string(64, 'b') + " *").find("WmWordTooLarge"),
            std::string::npos);
  for (const std::string& name : {std::string("/nonexistent"), directory_ / ""}) {
    EXPECT_EQ(thrownBy([&] { TkStopTable::createTable(name.c_str(), table.c_str()); }),
              "IO: Error opening stop table source file: " + name);
  }
  EXPECT_EQ(thrownBy([&] { TkStopTable loaded(table.c_str()); }),
            "KdAccess: Can't open key file " + table + ".key");
  // The former table outlives what fails, and nothing else is left.
  EXPECT_EQ(creating("a *"), "");
  EXPECT_EQ(creating("b *\n9b *"), "KdInit: Key must begin with a letter: 9b");
  writeFile(source, "b *");
  {
    const SmallDevice device(10);
    EXPECT_EQ(thrownBy([&] { TkStopTable::createTable(source.c_str(), table.c_str()); }),
              "IO: Error writing to pointer file.");
  }
  EXPECT_EQ(stopped(*std::make_unique<TkStopTable>(table.c_str()), "a"), "");
  const std::filesystem::directory_iterator files(directory_ / "");
  EXPECT_EQ(std::distance(begin(files), end(files)), 3);
  // Another kind of key file.
  delete KfKeyFileManager::KdCreate(table.c_str(), 512, 14, 5);
  EXPECT_EQ(thrownBy([&] { TkStopTable loaded(table.c_str()); }),
            "IO: " + table + " is no stop table");
}

TEST(TkStopTable, FaultsOfSources) {
  for (auto* check : {TkStopTable::checkSource, TkStemTable::checkSource}) {
    std::ifstream folder("/");
    TkSourceFault fault;
    EXPECT_FALSE(check(folder, &fault));
    EXPECT_EQ(fault.reason, "the file cannot be read");
  }
  const std::string word22(22, 'w'), word23(23, 'w');
  const struct {
    std::string source;
    int line;  // 0 for a sound source
    const char *token, *reason;
  } cases[] = {
      {"a *\n", 0, "", ""},
      {"a * b " + word22, 0, "", ""},
      {"\na *", 1, "", "the file does not begin with a letter"},
      {"a *\n\nc *\nb *", 4, "b", "the word is out of order"},
      {"a *\nA *", 2, "A", "the word stands there twice"},
      {"a *\nb\n", 2, "b", "the word has no replacement and no * behind it"},
      {"a\n\n", 1, "a", "the word has no replacement and no * behind it"},
      {"a *\n'b *", 2, "'b", "a word begins with a letter"},
      {"a *\n" + word22 + " *", 2, word22.c_str(), "a word has at most 21 letters"},
      {"a\n" + word23, 2, word23.c_str(), "a replacement has at most 22 letters"},
  };
  for (const auto& c : cases) {
    std::istringstream is(c.source);
    TkSourceFault fault;
    EXPECT_EQ(TkStopTable::checkSource(is, &fault), c.line == 0) << c.source;
    EXPECT_EQ(fault.line, c.line) << c.source;
    EXPECT_EQ(fault.token, c.token);
    EXPECT_EQ(fault.reason, c.reason);
  }
}

TEST(TkManager, StemmersOfTwoTables) {
  TestDirectory directory;
  const std::string stem = directory / "stem.tbl", stop = directory / "stop";
  writeFile(directory / "stem.src", "gni3> s1>");
  writeFile(directory / "stop.src", "oxen oxes the *");
  TkManager::CreateTables((directory / "stem.src").c_str(), stem.c_str(),
                          (directory / "stop.src").c_str(), stop.c_str());
  for (auto* factory : {TkManager::Stemmer, TkManager::NewStemmer, TkManager::BasicStemmer,
                        TkManager::FastStemmer}) {
    const std::unique_ptr<TkStemmerImpl> stemmer(factory(stem.c_str(), stop.c_str()));
    std::ostringstream os;
    for (const char* word : {"the", "oxen", "farming", "19960", "i'll"}) {
      WmLocalWord place;
      os << *stemmer->stem(WmLocalWord(word).word(), place.word()) << ',';
    }
    EXPECT_EQ(os.str(), ",oxe,farm,,,");
  }
  EXPECT_EQ(thrownBy([&] { TkManager::BasicStemmer(stem.c_str(), nullptr); }),
            "KdAccess: Can't open key file /Vandrelle/table/stop.old.key");
  // The stop table is compiled first.
  const std::string none = directory / "none";
  EXPECT_EQ(thrownBy([&] {
              TkManager::CreateTables(none.c_str(), stem.c_str(), none.c_str(), stop.c_str());
            }),
            "IO: Error opening stop table source file: " + none);
}

}  // namespace
}  // namespace vandrelle
