// vandrelleFeed over the examples of all layouts, and what users get wrong.

#include <gtest/gtest.h>

#include "Document/DcFieldsBinder.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkWordTable.h"
#include "Tool/HeapText.h"
#include "Word.h"
#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

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

  // A field of each document, in order.
  Texts fields(const char* name) {
    DcFieldsBinder binder(root().c_str());
    Texts values;
    for (int i = 0; i < binder.numDocuments(); ++i) {
      const HeapAptr<char> value(binder.retrieve(i, name));
      values.push_back(value == nullptr ? "(null)" : value.get());
    }
    return values;
  }

  bool holds(const std::string& word) {
    return IkLocalIndexBinder(root().c_str(), nullptr)
               .wordTable()
               ->wordNum(WmLocalWord(word.c_str()).word()) >= 0;
  }

  TestDirectory folder_;
};

TEST_F(FeedTest, EveryLayout) {
  const std::string none = "(Untitled)";
  const struct {
    int type;
    Texts titles;
    Texts words;
    Texts left;  // out
  } cases[] = {
      {1, {none}, {"breakwater"}, {}},
      {2, {"The ferry"}, {"gale"}, {"html"}},
      {3, {none, none, none}, {"mussels"}, {}},
      {4,
       {"Mussels on the north pier", "Re: Mussels on the north pier", none, "Lost rowing boat"},
       {"pier", "handcart", "nothing", "oars"},
       {"ada"}},
      {5, {none}, {"ledger", "herring", "line"}, {"fonttbl"}},
      {6, {"Tables of the tide/The arithmetic of the clerk"}, {"pencil", "tide"}, {"volume"}},
      {7,
       {"Seasickness among keepers of lighthouses", "Barnacles, and how to count them"},
       {"seasickness", "homesick", "nine"},
       {"refused", "belongs", "motion"}},
      {8,
       {"Ferry strike ends", "Seal leaves slipway"},
       {"stove", "unimpressed"},
       {"wall", "zyzzyva", "gif"}},
      {9, {"Telephones/ reach the lighthouse"}, {"wire", "telephones"}, {"week"}},
      {10, {"The pilot", none, "The smokehouse"}, {"sandbank", "crane", "rafters"}, {"refused"}},
      {11, {none, none, none}, {"dredging"}, {}},
      {12,
       {"Cranes on quays that are not level", "Locks"},
       {"wedge", "slowly"},
       {"pumps", "record"}},
      {13,
       {"Bridge opens/Mayor crosses it twice", "Sails mended"},
       {"drums", "nine"},
       {"none", "behind", "refused"}},
      {14, {"Eels", "Rope"}, {"yard", "pound"}, {}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.type);
    const ProgramRun result = feed(test.type, {example(test.type)});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(fields("title"), test.titles);
    for (const std::string& word : test.words) EXPECT_TRUE(holds(word)) << word;
    for (const std::string& word : test.left) EXPECT_FALSE(holds(word)) << word;
  }
}

TEST_F(FeedTest, CrawlerGivesAddressesAndStartsAfresh) {
  for (int twice = 0; twice < 2; ++twice) {
    ASSERT_EQ(feed(14, {example(14)}).status, 0);
    EXPECT_EQ(fields("url"),
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
  EXPECT_EQ(fields("summary")[0], "Forty keepers were asked.  ");
  EXPECT_TRUE(fs::exists(root() + ".prx"));
  EXPECT_FALSE(fs::exists(root() + ".prx000"));
  const auto rows = fileBytes(root() + ".dat");
  ASSERT_EQ(feed(7, {example(7)}).status, 0);
  EXPECT_EQ(fileBytes(root() + ".dat"), rows);
  EXPECT_FALSE(fs::exists(root() + ".prx")) << "positions of another index";
}

TEST_F(FeedTest, WhatUsersGetWrong) {
  const std::string good = example(1);
  writeFile(folder_ / "bare.gz", "not compressed");
  const struct {
    const char* what;
    Texts arguments;
    int status;
    std::string told;
  } cases[] = {
      {"nothing", {}, 2, "usage: vandrelleFeed -R root -type N"},
      {"no file", {"-R", root(), "-type", "1"}, 2, "usage: "},
      {"no type", {"-R", root(), good}, 2, "usage: "},
      {"no root", {"-type", "1", good}, 2, "usage: "},
      {"type 0",
       {"-R", root(), "-type", "0", good},
       2,
       "-type takes a number from 1 to 14, not '0'"},
      {"type 15", {"-R", root(), "-type", "15", good}, 2, "-type takes a number"},
      {"type 1x", {"-R", root(), "-type", "1x", good}, 2, "-type takes a number"},
      {"no value", {"-R", root(), good, "-type"}, 2, "-type needs a value; usage: "},
      {"no value before an option",
       {"-R", root(), "-type", "1", "-stem", "-stop", good},
       2,
       "-stem needs a value; usage: "},
      {"addresses twice",
       {"-R", root(), "-type", "14", "-mapfile", good, good},
       2,
       "-mapfile is not for types 10 and 14"},
      {"sentences",
       {"-R", root(), "-type", "1", "-nss", "-3", good},
       2,
       "-nss takes a number from 1 on"},
      {"unknown",
       {"-R", root(), "-type", "1", "-html", good},
       2,
       "there is no option '-html'; usage: "},
      {"no documents",
       {"-R", root(), "-type", "4", folder_ / "gone"},
       1,
       "no valid files added to index - no index built"},
      {"not compressed",
       {"-R", root(), "-type", "11", folder_ / "bare.gz"},
       1,
       "no valid files added"},
      {"no list",
       {"-R", root(), "-type", "1", "-flist", "/nonexistent"},
       1,
       "Coudn't open filelist '/nonexistent'."},
      {"no stem table",
       {"-R", root(), "-type", "1", "-stem", "/nonexistent", good},
       1,
       "/nonexistent"},
      {"no folder", {"-R", "/nonexistent/feed", "-type", "1", good}, 1, "/nonexistent/feed"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const ProgramRun result = feed(test.arguments, test.status == 1);
    EXPECT_EQ(result.status, test.status);
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find("vandrelleFeed: "), std::string::npos);
    EXPECT_NE(result.errors.find(test.told), std::string::npos) << result.errors;
  }
}

}  // namespace
}  // namespace vandrelle::test
