#include "Index/IkLocalIndexBinder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "Fast/FiStemTable.h"
#include "IkTestTools.h"
#include "IkTinyIndex.h"
#include "Index/IkDataFileBinder.h"
#include "Index/IkIdfBinder.h"
#include "Index/IkIdfCache.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkTranspose.h"
#include "Index/IkUnstemmer.h"
#include "Tool/SysTools.h"

namespace vandrelle {
namespace {

const IkTinyWords kWords = {{"apple", {{0, {1}}, {2, {0, 4}}}},
                            {"pear", {{1, {3}}}},
                            {"plum", {{0, {0}}, {1, {1}}, {2, {9}}}}};

int frequencyIn(IkLocalIndexBinder* binder, const char* text, int chunk) {
  StStoragePos position;
  const WmLocalWord word(text);
  if (!binder->wordTable()->lookup(word.word(), position)) return -1;
  binder->indexData(0, 0)->seek(position);
  int frequency = 0;
  binder->indexData(0, 0)->unpackPairs([&](int doc_num, int doc_freq) {
    if (doc_num == chunk) frequency = doc_freq;
  });
  return frequency;
}

TEST(IkLocalIndexBinder, LeadsFromWordsToRows) {
  const std::string root = writeTinyIndex("leads", 3, kWords);
  for (int mapped : {0, 1}) {
    IkLocalIndexBinder binder(root.c_str(), nullptr);
    KdFileAccessor* const keyfile = binder.keyfile(mapped);
    EXPECT_EQ(binder.keyfile(1 - mapped), keyfile);
    binder.indexData(0, mapped);
    EXPECT_EQ(binder.info()->numTerms, 3);
    EXPECT_EQ(frequencyIn(&binder, "apple", 2), 2);
    EXPECT_EQ(frequencyIn(&binder, "plum", 1), 1);
    EXPECT_EQ(frequencyIn(&binder, "fig", 1), -1);
    IkWordTable* const words = binder.wordTable();
    EXPECT_EQ(words->wordNum(WmLocalWord("plum").word()), 2);
    EXPECT_EQ(words->wordNum(WmLocalWord("zebra").word()), -1);
    EXPECT_TRUE(*words->word(1) == *WmLocalWord("pear").word());
    EXPECT_EQ(words->word(3), nullptr);
    EXPECT_EQ(words->word(-1), nullptr);
    int cookie = -1;
    EXPECT_TRUE(words->lookup(WmLocalWord("pear").word(), &cookie));
    EXPECT_EQ(cookie, 16);
    EXPECT_EQ(binder.idfBinder()->idf(0), binder.idfBinder()->idf(2));
    EXPECT_TRUE(binder.type()->isA("IkIndexBinder"));
  }
}

TEST(IkLocalIndexBinder, MapsTheArraysOfDocuments) {
  const std::string root = writeTinyIndex("arrays", 3, kWords);
  IkLocalIndexBinder binder(root.c_str(), nullptr);
  writeBytes(root + ".norm", std::string("\1\2", 2));
  EXPECT_NE(thrownBy([&] { binder.normfile(); }), "");
  writeBytes(root + ".norm", std::string("\1\2\xFF", 3));
  EXPECT_EQ(binder.normfile()[2], 255);
  writeBytes(root + ".sum", std::string("\0\0\0\0\x3F\x80\0\0\x40\0\0\0", 12));
  EXPECT_EQ(binder.sumfile()[1], 1.0f);
  EXPECT_EQ(binder.sumfile()[2], 2.0f);
}

TEST(IkLocalWordTable, ReadsBothFormsOfAPosition) {
  const unsigned char data[] = {1, 2, 3, 4, 5};
  EXPECT_EQ(IkLocalWordTable::pos(data, 4), StStoragePos(0x01020304));
  EXPECT_EQ(IkLocalWordTable::pos(data, 5), StStoragePos(5, 0x01020304));
  EXPECT_NE(thrownBy([&] { IkLocalWordTable::pos(data, 3); }), "");
}

TEST(IkIdfCache, ForgetsAWordWhenItIsFull) {
  IkTinyWords words;
  for (int i = 0; i < 40; ++i) {
    IkTinyRow row;
    for (int chunk = 0; chunk <= i; ++chunk) row.push_back({chunk, {0}});
    words[std::string(1, static_cast<char>('a' + i % 26)) + std::to_string(i)] = row;
  }
  const std::string root = writeTinyIndex("cached", 40, words);
  IkLocalIndexBinder binder(root.c_str(), nullptr);
  IkIdfCache* const cache = binder.idfCache();
  cache->cacheSize(3);
  for (int round = 0; round < 3; ++round) {
    for (const auto& [text, row] : words) {
      EXPECT_EQ(cache->idf(*WmLocalWord(text.c_str()).word()), static_cast<float>(row.size()));
    }
    EXPECT_EQ(cache->idf(*WmLocalWord("none").word()), 0.0f);
    cache->cacheSize(2 - round);
  }
  cache->cacheSize(1);
  const WmLocalWord first(words.begin()->first.c_str());
  cache->idf(*first.word());
  binder.indexData(0, 0)->seek(StStoragePos());
  binder.indexData(0, 0)->next();
  const StStoragePos before = binder.indexData(0, 0)->tell();
  cache->idf(*first.word());  // held: the rows aren't read again
  EXPECT_EQ(binder.indexData(0, 0)->tell(), before);
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
  const std::string directory = testing::TempDir() + "cleanup";
  mkdir(directory.c_str(), 0755);
  mkdir((directory + "/safe").c_str(), 0755);
  mkdir((directory + "/safer").c_str(), 0755);
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
