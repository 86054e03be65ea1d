#include "Index/IkLocalIndexBinder.h"

#include "Fast/FiStemTable.h"
#include "IkTestTools.h"
#include "IkTinyIndex.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkTranspose.h"
#include "Index/IkUnstemmer.h"
#include "Tool/SysTools.h"

namespace vandrelle {
namespace {

const IkTinyWords kWords = {{"apple", {{0, {1}}, {2, {0, 4}}}},
                            {"pear", {{1, {3}}}},
                            {"plum", {{0, {0}}, {1, {1}}, {2, {9}}}}};

TEST(IkLocalWordTable, ReadsBothFormsOfAPosition) {
  const unsigned char data[] = {1, 2, 3, 4, 5};
  EXPECT_EQ(IkLocalWordTable::pos(data, 4), StStoragePos(0x01020304));
  EXPECT_EQ(IkLocalWordTable::pos(data, 5), StStoragePos(5, 0x01020304));
  EXPECT_NE(thrownBy([&] { IkLocalWordTable::pos(data, 3); }), "");
}

TEST(IkLocalIndexBinder, TellsDigestFilesByTheirSize) {
  const std::string root = writeTinyIndex("digests", 3, kWords);
  IkIndexInfo info;
  info.read((root + ".info").c_str());
  info.numDigestWords = 2;
  info.write((root + ".info").c_str());
  const struct {
    std::size_t size;
    const char* failure;
  } cases[] = {{35, "Ik: Invalid transpose file!"},
               {33, "Ik: Invalid transpose file!"},
               {24, "Ik: Invalid transpose entry size!"},
               {0, "Ik: Invalid transpose entry size!"},
               {36, ""},
               {30, ""}};
  for (const auto& c : cases) {
    std::string bytes(c.size, '\0');
    if (!bytes.empty()) bytes[bytes.size() - 3] = 7;  // word of the last entry
    writeBytes(root + ".trp", bytes);
    for (int lines : {0, 4}) {
      IkLocalIndexBinder binder(root.c_str(), nullptr);
      binder.transposeCacheSize(lines);
      EXPECT_EQ(thrownBy([&] { binder.transpose(); }), c.failure) << c.size;
      if (*c.failure != '\0') continue;
      EXPECT_EQ(binder.transpose()->wordNum(2, 1), 7) << c.size;
    }
  }
  std::remove((root + ".trp").c_str());
  IkLocalIndexBinder binder(root.c_str(), nullptr);
  EXPECT_NE(thrownBy([&] { binder.transpose(); }), "");
}

TEST(IkUnstemmer, KeepsTheMostSignificantWords) {
  const std::string root = writeTinyIndex("stems", 3, kWords);
  std::remove((root + ".unstem").c_str());
  {
    FiStemTable table;
    table.bind((root + ".unstem").c_str(), 1, 0);
    for (const char* word : {"pear", "plum", "apple", "unknown"}) {
      table.insert(*WmLocalWord("fruit").word(), *WmLocalWord(word).word(), -1);
    }
  }
  IkLocalIndexBinder binder(root.c_str(), nullptr);
  IkUnstemmer::Tree tree;
  binder.unstemmer()->find(*WmLocalWord("fruit").word(), tree, 2);
  EXPECT_EQ(tree.size(), 2);
  EXPECT_TRUE(tree.top()->word == *WmLocalWord("plum").word());
  EXPECT_TRUE(tree.bot()->word == *WmLocalWord("apple").word());
  binder.unstemmer()->find(*WmLocalWord("none").word(), tree, 2);
  EXPECT_EQ(tree.size(), 2);
}

TEST(IkLocalIndexBinder, CleansUpUnderTheSafePathOnly) {
  const TestDirectory scratch;
  const std::string& directory = scratch.path();
  for (const char* root : {"/safe/web", "/safer/web"}) {
    for (const char* suffix : {".info", ".dat", "x"}) writeBytes(directory + root + suffix, "");
    IkLocalIndexBinder binder((directory + root).c_str(), nullptr);
    binder.safeCleanupPath((directory + "/safe").c_str());
    EXPECT_EQ(binder.cleanupFiles(), 0);
  }
  EXPECT_FALSE(SysTools::fileExists((directory + "/safe/web.info").c_str()));
  EXPECT_FALSE(SysTools::fileExists((directory + "/safe/webx").c_str()));
  EXPECT_TRUE(SysTools::fileExists((directory + "/safer/web.info").c_str()));
  EXPECT_EQ(IkLocalIndexBinder((directory + "/").c_str(), nullptr).cleanupFiles(), -1);
  EXPECT_EQ(IkLocalIndexBinder((directory + "/none/web").c_str(), nullptr).cleanupFiles(), -1);
}

}  // namespace
}  // namespace vandrelle
