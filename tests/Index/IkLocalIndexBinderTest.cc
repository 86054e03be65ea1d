#include "Index/IkLocalIndexBinder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "IkTestTools.h"
#include "IkTinyIndex.h"
#include "Index/IkDataFileBinder.h"
#include "Index/IkIdfBinder.h"
#include "Index/IkIdfCache.h"
#include "Index/IkLocalWordTable.h"
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
