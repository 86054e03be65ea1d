#include "Document/DcTypeMap.h"

#include "IntakeFixture.h"

namespace vandrelle {
namespace {

class DcTypeMapTest : public IntakeTest {};

TEST_F(DcTypeMapTest, FirstMatchingRuleDecides) {
  DcRegexpTypeMap map;
  map.excludeRegExp("/drafts");
  map.excludeBadEndings();
  map.addDataType("\\.txt$", 1, 0);
  map.addDataType("a\\.", 7, 0);
  map.addDataType("(broken", 9, 0);
  map.DoneWithDataTypes();
  const struct {
    const char* path;
    int type;
  } cases[] = {{"/x/a.txt", 1},     {"/x/a.text", 7},  {"/x/drafts/a.txt", 0},
               {"/x/b.html", 0},    {"/x/a.gif", 0},   {"/x/a.GIF", 7},
               {"/x/a.gif.txt", 1}, {"/x/(broken", 0}, {"/x/new\nline.txt", 1}};
  for (const auto& one : cases) EXPECT_EQ(map.fileToType(one.path), one.type) << one.path;
  EXPECT_TRUE(logged("2:/x/drafts/a.txt matches regexp /drafts - Excluded."));
  EXPECT_TRUE(logged("2:/x/a.gif matches regexp \\.gif$ - Excluded."));
  EXPECT_EQ(log_.lines().size(), 3u);
}

TEST_F(DcTypeMapTest, BinaryThresholdIsNinetyNineToOne) {
  const struct {
    std::size_t text, binary;
    int isBin;
  } cases[] = {{990, 10, 0}, {990, 11, 1}, {1024, 0, 0}, {0, 0, 0}, {0, 1, 1}};
  for (const auto& one : cases) {
    const std::string bytes = std::string(one.text, 'a') + std::string(one.binary, '\x80');
    const std::string file = write("file", bytes + std::string(1024 - bytes.size(), '\0'));
    DcBintest tester;
    EXPECT_EQ(tester.isBin(file.c_str()), one.isBin) << one.text << ":" << one.binary;
  }
}

TEST_F(DcTypeMapTest, ShortFileIsJudgedWithWhatTheFormerLeft) {
  DcBintest tester;
  const std::string shortText = write("short", "some text\n");
  EXPECT_EQ(tester.isBin(shortText.c_str()), 0);
  EXPECT_EQ(tester.isBin(write("binary", std::string(1024, '\x01')).c_str()), 1);
  EXPECT_EQ(tester.isBin(shortText.c_str()), 1);
}

TEST_F(DcTypeMapTest, BinaryTestComesBeforeTheTypeOfTheRule) {
  const std::string binary = write("picture", std::string(100, '\x02'));
  DcRegexpTypeMap map;
  map.addDataType("picture", 0, 1);
  map.addDataType("missing", 1, 1);
  EXPECT_EQ(map.fileToType(binary.c_str()), 0);
  EXPECT_EQ(map.fileToType("/missing"), 0);
  EXPECT_EQ(log_.lines(), (std::vector<std::string>{"0:" + binary + " is binary.  Skipped.",
                                                    "0:File : /missing. Can't open Skipped.",
                                                    "0:/missing is binary.  Skipped."}));
}

}  // namespace
}  // namespace vandrelle
