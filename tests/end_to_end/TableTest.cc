// vandrelleTable as a user runs it: what it compiles, shows and refuses.

#include <sys/stat.h>

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

class TableTest : public ::testing::Test {
 protected:
  // Runs the program with the file `source` holding `text`.
  ProgramRun table(const std::string& text, const std::vector<std::string>& arguments) {
    writeFile(folder_ / "source", text);
    return run(folder_, "vandrelleTable", arguments);
  }
  std::string path(const char* name) const { return folder_ / name; }

  TestDirectory folder_;
};

TEST_F(TableTest, BrokenSourcesAreToldWithTheirPlace) {
  std::string twenty;
  for (int i = 0; i < 20; ++i) twenty += "a1.\n";
  const struct {
    const char* option;
    std::string text, message;
  } cases[] = {
      {"-stem", "a1.\nb1. c#1.\n", ", line 2: \"c#1.\": this is no rule"},
      {"-stem", "a1.\n\nabcdefg1.", ", line 3: \"abcdefg1.\": this is no rule"},
      {"-stem", twenty + "a2.", ", line 21: \"a2.\": more than 20 rules have this first letter"},
      {"-stem", "a1. b1. a2.", ", line 1: \"a2.\": the rules of its first letter stand further up"},
      {"-stop", "a *\nb", ", line 2: \"b\": the word has no replacement and no * behind it"},
  };
  for (const auto& c : cases) {
    const ProgramRun result =
        table(c.text, {std::string(c.option) + "src", path("source"), c.option, path("table")});
    EXPECT_EQ(result.status, 1) << c.text;
    EXPECT_EQ(result.errors, "vandrelleTable: " + path("source") + c.message + "\n");
    EXPECT_FALSE(std::filesystem::exists(path("table")));
    EXPECT_FALSE(std::filesystem::exists(path("table.key")));
  }
}

TEST_F(TableTest, OtherFailures) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const struct {
    std::vector<std::string> arguments;
    std::string message;
  } cases[] = {
      {{"-stemsrc", path("none"), "-stem", path("t")}, "cannot open " + path("none")},
      {{"-stopsrc", folder_ / "", "-stop", path("t")},
       path("") + ", line 1: the file cannot be read"},
      {{"-stopsrc", path("source"), "-stop", path("none/t")},
       "Can't open key file for writing: " + path("none/t.new.key")},
      {{"-stemsrc", path("source"), "-stem", path("none/t")},
       "The stemmer rules file could not be written: " + path("none/t")},
      {{"-stemsrc", path("source"), "-stem", path("pipe")},
       "The stemmer rules file could not be written: " + path("pipe")},
      {{"-show", "-stem", path("none"), "word"},
       "Error opening stemmer rules file " + path("none")},
  };
  for (const auto& c : cases) {
    const ProgramRun result = table("a *", c.arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "vandrelleTable: " + c.message + "\n");
  }
  for (const char* misused : {"", "-show", "word", "-stemsrc x", "-stopsrc x -stem y", "-stem",
                              "-stem x -stop y", "-show -help"}) {
    const ProgramRun result = table("a *", split(misused, ' '));
    EXPECT_EQ(result.status, 2) << misused;
    EXPECT_NE(result.errors.find("usage: vandrelleTable"), std::string::npos) << misused;
  }
}

TEST_F(TableTest, ShowsWhyAWordIsStemmed) {
  const std::string stem = path("stem.tbl"), stop = path("stop");
  ASSERT_EQ(table("gni3> nn1. s1?> yl2>", {"-stemsrc", path("source"), "-stem", stem}).status, 0);
  ASSERT_EQ(table("mice mouse the *", {"-stopsrc", path("source"), "-stop", stop}).status, 0);
  const ProgramRun result = table("", {"-show", "-stem", stem, "-stop", stop, "Spinning's", "the",
                                       "mice", "dogs'", "can't", "19960", "x", "runnings", "ant"});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.output,
            "spinning's\n  without its apostrophe: spinning\n  rule gni3>: spinn\n"
            "  rule nn1.: spin\n  stem: spin\n"
            "the\n  stop word\n  not indexed\n"
            "mice\n  stop table, indexed as: mouse\n  stem: mouse\n"
            "dogs'\n  without its apostrophe: dogs\n  rule s1?>: dog\n  stem: dog\n"
            "can't\n  a contraction that is left out\n  not indexed\n"
            "19960\n  too many digits\n  not indexed\n"
            "x\n  too short, or begins with a mark\n  not indexed\n"
            "runnings\n  rule s1?>: running\n  rule gni3>: runn\n  stem: runn\n"
            "ant\n  stem: ant\n");
}

}  // namespace
}  // namespace vandrelle::test
