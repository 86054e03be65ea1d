// vandrelleFeed over the examples of all layouts, and what users get wrong.

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

const fs::path kExamples = VANDRELLE_SOURCE_DIR "/examples/feeds";

class FeedTest : public ::testing::Test {
 protected:
  std::string root() const { return folder_ / "feed"; }

  ProgramRun feed(const Texts& arguments, bool tables = true) {
    return run(folder_, "vandrelleFeed", tables ? kTables + arguments : arguments);
  }
  ProgramRun feed(int type, const Texts& more) {
    return feed(Texts{"-R", root(), "-type", std::to_string(type)} + more);
  }

  static std::string example(int type) {
    for (const auto& entry : fs::directory_iterator(kExamples)) {
      if (std::stoi(entry.path().filename().string()) == type) return entry.path();
    }
    return {};
  }

  TestDirectory folder_;
};

TEST_F(FeedTest, EveryLayout) {
  const std::string none = "(Untitled)";
  const struct {
    int type;
    Texts titles;
    const char* words;
    const char* left;  // out
  } cases[] = {
      {1, {none}, "breakwater", ""},
      {2, {"The ferry"}, "gale", "html"},
      {3, {none, none, none}, "mussels", ""},
      {4,
       {"Mussels on the north pier", "Re: Mussels on the north pier", none, "Lost rowing boat"},
       "pier handcart nothing oars",
       "ada"},
      {5, {none}, "ledger herring line", "fonttbl"},
      {6, {"Tables of the tide/The arithmetic of the clerk"}, "pencil tide", "volume"},
      {7,
       {"Seasickness among keepers of lighthouses", "Barnacles, and how to count them"},
       "seasickness homesick nine",
       "refused belongs motion"},
      {8, {"Ferry strike ends", "Seal leaves slipway"}, "stove unimpressed", "wall zyzzyva gif"},
      {9, {"Telephones/ reach the lighthouse"}, "wire telephones", "week"},
      {10, {"The pilot", none, "The smokehouse"}, "sandbank crane rafters", "refused"},
      {11, {none, none, none}, "dredging", ""},
      {12, {"Cranes on quays that are not level", "Locks"}, "wedge slowly", "pumps record"},
      {13,
       {"Bridge opens/Mayor crosses it twice", "Sails mended"},
       "drums nine",
       "none behind refused"},
      {14, {"Eels", "Rope"}, "yard pound", ""},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.type);
    const ProgramRun result = feed(test.type, {example(test.type)});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(fieldsOf(root(), "title"), test.titles);
    for (const std::string& word : split(test.words, ' ')) EXPECT_TRUE(holds(root(), word)) << word;
    for (const std::string& word : split(test.left, ' ')) EXPECT_FALSE(holds(root(), word)) << word;
  }
}

TEST_F(FeedTest, CrawlerGivesAddressesAndStartsAfresh) {
  for (int twice = 0; twice < 2; ++twice) {
    ASSERT_EQ(feed(14, {example(14)}).status, 0);
    EXPECT_EQ(fieldsOf(root(), "url"),
              (Texts{"http://market.example:80/eels.html", "http://market.example:80/rope.html"}));
  }
  ASSERT_EQ(feed(10, {example(10)}).status, 0);
  const std::string urls = fileBytes(root() + ".url");
  EXPECT_NE(urls.find("pilot"), urls.npos);
  EXPECT_EQ(urls.find("eels"), urls.npos);
}

TEST_F(FeedTest, PositionsListsAndSummaries) {
  writeFile(folder_ / "list", example(7));
  ASSERT_EQ(feed(7, {"-prox", "-fsum", "-nss", "1", "-flist", folder_ / "list"}).status, 0);
  EXPECT_EQ(fieldsOf(root(), "summary")[0], "Forty keepers were asked.  ");
  EXPECT_TRUE(fs::exists(root() + ".prx"));
  EXPECT_FALSE(fs::exists(root() + ".prx000"));
  const auto rows = fileBytes(root() + ".dat");
  ASSERT_EQ(feed(7, {example(7)}).status, 0);
  EXPECT_EQ(fileBytes(root() + ".dat"), rows);
  EXPECT_FALSE(fs::exists(root() + ".prx")) << "positions of another index";
}

TEST_F(FeedTest, WhatUsersGetWrong) {
  writeFile(folder_ / "bare.gz", "not compressed");
  const struct {
    std::string arguments;  // GOOD, ROOT and BARE stand for paths
    int status;
    std::string told;
  } cases[] = {
      {"", 2, "usage: vandrelleFeed -R root -type N"},
      {"-R ROOT -type 1", 2, "usage: "},
      {"-R ROOT GOOD", 2, "usage: "},
      {"-type 1 GOOD", 2, "usage: "},
      {"-R ROOT -type 0 GOOD", 2, "-type takes a number from 1 to 14, not '0'"},
      {"-R ROOT -type 15 GOOD", 2, "-type takes a number"},
      {"-R ROOT -type 1x GOOD", 2, "-type takes a number"},
      {"-R ROOT GOOD -type", 2, "-type needs a value; usage: "},
      {"-R ROOT -type 1 -stem -stop GOOD", 2, "-stem needs a value; usage: "},
      {"-R ROOT -type 14 -mapfile GOOD GOOD", 2, "-mapfile is not for types 10 and 14"},
      {"-R ROOT -type 1 -nss -3 GOOD", 2, "-nss takes a number from 1 on"},
      {"-R ROOT -type 1 -html GOOD", 2, "there is no option '-html'; usage: "},
      {"-R ROOT -type 4 /nonexistent", 1, "no valid files added to index - no index built"},
      {"-R ROOT -type 11 BARE", 1, "no valid files added"},
      {"-R ROOT -type 1 -flist /nonexistent", 1, "Coudn't open filelist '/nonexistent'."},
      {"-R ROOT -type 1 -stem /nonexistent GOOD", 1, "/nonexistent"},
      {"-R /nonexistent/feed -type 1 GOOD", 1, "/nonexistent/feed"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.arguments);
    Texts arguments;
    for (const std::string& word : split(test.arguments, ' ')) {
      arguments.push_back(word == "GOOD"   ? example(1)
                          : word == "ROOT" ? root()
                          : word == "BARE" ? folder_ / "bare.gz"
                                           : word);
    }
    const ProgramRun result = feed(arguments, test.status == 1);
    EXPECT_EQ(result.status, test.status);
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find("vandrelleFeed: "), std::string::npos);
    EXPECT_NE(result.errors.find(test.told), std::string::npos) << result.errors;
  }
}

}  // namespace
}  // namespace vandrelle::test
