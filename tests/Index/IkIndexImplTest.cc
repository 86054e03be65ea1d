// Whole builds through the facade, over documents in memory.

#include "Index/IkIndexImpl.h"

#include <sys/stat.h>

#include <cmath>
#include <cstdio>

#include "Fun/Fd.h"
#include "Fun/FdBag.h"
#include "Fun/FdWrapper.h"
#include "IkTestTools.h"
#include "IkTextManager.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkProxBinder.h"
#include "Index/IkTranspose.h"
#include "Index/IkWordTable.h"
#include "Token/TkWordPair.h"
#include "Tool/ByteOrder.h"
#include "Tool/SysTools.h"

namespace vandrelle {
namespace {

class IkIndexImplTest : public DirectoryTest {
 protected:
  IkIndexImplTest() {
    index_.name(root_.c_str());
    index_.documentManager(&documents_);
  }

  std::vector<float> floats(const char* suffix) const {
    const std::string bytes = bytesOf(root_ + suffix);
    std::vector<float> values;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) values.push_back(loadFloat(&bytes[i]));
    return values;
  }

  std::vector<std::string> builtFiles() const {
    std::vector<std::string> contents;
    for (const char* suffix : {".info", ".key", ".ptr", ".dat", ".idf", ".sum", ".norm",
                               ".norm.raw", ".prx", ".prx.map"}) {
      contents.push_back(bytesOf(root_ + suffix));
    }
    return contents;
  }

  // The positions of a word, of all its documents in a row; "-" for no word.
  std::string positions(const WmWord* word, std::vector<int> frequencies) const {
    IkLocalIndexBinder binder(root_.c_str(), nullptr);
    const int number = binder.wordTable()->wordNum(word);
    if (number < 0) return "-";
    IkProxBinder file((root_ + ".prx").c_str());
    const std::unique_ptr<IkProxBuffer> buffer(file.getBuffer(static_cast<uint32>(number)));
    std::string text;
    for (const int frequency : frequencies) {
      buffer->reset();
      for (int i = 0; i < frequency; ++i) text += std::to_string(buffer->get()) + ' ';
    }
    return text;
  }

  // The third has a special term; the second and the last have no words at all.
  TextManager documents_{{"alpha beta alpha", "", " Mark|beta", "gamma alpha beta beta", ""}};
  const std::string root_ = directory_ / "facade";
  IkIndexImpl index_;
};

TEST_F(IkIndexImplTest, Stage12WritesTheFilesOfAnIndex) {
  TestLog log;
  index_.create_stage12(0, 0);
  EXPECT_EQ(log.lines(), (std::vector<std::string>{
                             "1:Indexing, stage 1", "2:Indexed 0, 16 bytes, 3 terms",
                             "2:Indexed 1, 0 bytes, 0 terms", "2:Indexed 2, 4 bytes, 2 terms",
                             "2:Indexed 3, 21 bytes, 4 terms", "2:Indexed 4, 0 bytes, 0 terms",
                             "1:Indexing, stage 2"}));
  IkIndexInfo info;
  info.read((root_ + ".info").c_str());
  EXPECT_EQ(info.numTerms, 4);
  EXPECT_EQ(info.totalNumChunks, 4);  // the last document has no term

  // Rows of " Mark", alpha, beta, gamma: size, scale, pairs, padding.
  std::string expected;
  const struct {
    std::string pairs;
    float df;
  } rows[] = {{std::string("\x80\x02", 2), 1},
              {std::string("\0\0\x02\x80\x03", 5), 2},
              {std::string("\x80\0\x80\x02\0\x01\x02", 7), 3},
              {std::string("\x80\x03", 2), 1}};
  for (const auto& row : rows) {
    unsigned char header[8];
    storeU32(header, static_cast<uint32>(row.pairs.size()));
    storeFloat(header + 4, static_cast<float>(std::log(static_cast<double>(5.0f / row.df))));
    expected.append(reinterpret_cast<char*>(header), 8) += row.pairs;
    expected.resize((expected.size() + 3) / 4 * 4);
  }
  EXPECT_EQ(bytesOf(root_ + ".dat"), expected);
  // For this number of documents the largest idf in its unit rounds to just below 255.
  EXPECT_EQ(bytesOf(root_ + ".idf"), (std::string{'\xFE', '\x91', '\x50', '\xFE'}));

  // Characters, a separator a word; below the least length all have the same byte.
  EXPECT_EQ(floats(".norm.raw"), (std::vector<float>{17, 0, 11, 22}));
  EXPECT_EQ(bytesOf(root_ + ".norm"), std::string("\xFF\0\xFF\xFF", 4));
  const float idf1 = std::log(5.0f), idf2 = std::log(5.0f / 2), idf3 = std::log(5.0f / 3);
  const std::vector<float> sums = floats(".sum");
  ASSERT_EQ(sums.size(), 4u);
  EXPECT_FLOAT_EQ(sums[0], std::sqrt(4 * idf2 * idf2 + idf3 * idf3));
  EXPECT_EQ(sums[1], 0);
  EXPECT_FLOAT_EQ(sums[2], std::sqrt(idf1 * idf1 + idf3 * idf3));
  EXPECT_FLOAT_EQ(sums[3], std::sqrt(idf1 * idf1 + idf2 * idf2 + 4 * idf3 * idf3));

  EXPECT_EQ(positions(WmLocalWord("alpha").word(), {2, 1}), "0 2 1 ");
  EXPECT_EQ(positions(WmLocalWord("beta").word(), {1, 1, 2}), "1 0 2 3 ");
}

TEST_F(IkIndexImplTest, StagesByHandGiveTheSameIndex) {
  index_.create_stage12(0, 0);
  const std::vector<std::string> together = builtFiles();
  for (const char* suffix : {".info", ".dat", ".key", ".ptr"}) {
    std::remove((root_ + suffix).c_str());
  }
  std::remove((root_ + ".tmp000").c_str());

  index_.create_stage1(3, 0, 1);
  EXPECT_TRUE(SysTools::fileExists((root_ + ".tmp003").c_str()));
  EXPECT_TRUE(SysTools::fileExists((root_ + ".prx003").c_str()));
  EXPECT_FALSE(SysTools::fileExists((root_ + ".tmp000").c_str()));
  index_.create_stage1(4, 2, 0);
  EXPECT_FALSE(SysTools::fileExists((root_ + ".dat").c_str()));

  FdSBag names(Fd::Queue());
  names.insert((root_ + ".tmp009").c_str());
  index_.create_stage2(names.bag());
  EXPECT_FALSE(SysTools::fileExists((root_ + ".dat").c_str()));
  for (const char* suffix : {".tmp003", ".tmp004"}) names.insert((root_ + suffix).c_str());
  index_.showProgress(0.1f);  // of a total that this stage doesn't know
  index_.create_stage2(names.bag());
  EXPECT_EQ(builtFiles(), together);
}

TEST_F(IkIndexImplTest, FlagsLeaveFilesOut) {
  index_.createSumfile(0);
  index_.createNormfile(0);
  index_.recordProximity(0);
  // An earlier index with positions, which had outgrown one file.
  ASSERT_EQ(mkdir((root_ + ".prx").c_str(), 0700), 0);
  writeBytes(root_ + ".prx/00000000", "old");
  writeBytes(root_ + ".prx.map", "old");
  index_.create_stage12(0, 0);
  for (const char* suffix : {".sum", ".norm", ".norm.raw", ".prx", ".prx.map", ".prx000"}) {
    EXPECT_FALSE(SysTools::fileExists((root_ + suffix).c_str())) << suffix;
  }
  EXPECT_NE(bytesOf(root_ + ".dat"), "");
  EXPECT_EQ(thrownBy([&] { index_.create_stage3(); }),
            "Ik: Can't bind to .sum file during transpose creation");
}

// With two of four chunks counted as deleted, a word in the other two and one more is
// worth nothing.
TEST_F(IkIndexImplTest, DroppedWordsLeaveNoPositions) {
  index_.create_stage1(0, 0, 0);
  IkIndexInfo info;
  info.read((root_ + ".info").c_str());
  info.numDeletedChunks = 2;
  info.write((root_ + ".info").c_str());
  FdSBag names(Fd::Queue());
  names.insert((root_ + ".tmp000").c_str());
  index_.create_stage2(names.bag());
  EXPECT_EQ(positions(WmLocalWord("alpha").word(), {2, 1}), "0 2 1 ");
  EXPECT_EQ(positions(WmLocalWord("beta").word(), {}), "-");
  EXPECT_EQ(positions(WmLocalWord("gamma").word(), {1}), "0 ");
}

TEST_F(IkIndexImplTest, PairsStandAtTheirSecondWord) {
  index_.hashbits(20);
  index_.create_stage12(0, 0);
  const struct {
    const char* first;
    const char* second;
    std::vector<int> frequencies;
    const char* expected;
  } cases[] = {{"alpha", "beta", {1, 1}, "1 2 "},
               {"beta", "alpha", {1}, "2 "},
               {" Mark", "beta", {1}, "0 "},
               {"beta", "beta", {1}, "3 "},
               {"alpha", "gamma", {}, "-"}};
  TkWordPairHashImpl hash(20);
  for (const auto& c : cases) {
    WmLocalWord pair;
    hash.hash(WmLocalWord(c.first, 1).word(), WmLocalWord(c.second).word(), pair.word());
    pair->rawletter(pair->num_letters(), '@');
    pair->num_letters(pair->num_letters() + 1);
    EXPECT_EQ(positions(pair.word(), c.frequencies), c.expected) << c.first << ' ' << c.second;
  }
}

TEST_F(IkIndexImplTest, DigestsLeaveSpecialTermsOut) {
  index_.numDigestWords(2);
  index_.create(0, 0);
  EXPECT_EQ(bytesOf(root_ + ".trp").size(), 4u * 2 * 6);
  IkLocalIndexBinder binder(root_.c_str(), nullptr);
  IkTranspose* const digests = binder.transpose();
  const std::vector<float> sums = floats(".sum");
  const float idf2 = std::log(5.0f / 2), idf3 = std::log(5.0f / 3);
  // Words 1 alpha, 2 beta, 3 gamma; an unused entry comes first.
  const struct {
    int word[2];
    float score[2];
  } expected[] = {{{1, 2}, {2 * idf2 / sums[0], idf3 / sums[0]}},
                  {{0, 0}, {0, 0}},
                  {{0, 2}, {0, idf3 / sums[2]}},
                  {{2, 3}, {2 * idf3 / sums[3], std::log(5.0f) / sums[3]}}};
  for (int doc = 0; doc < 4; ++doc) {
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(digests->wordNum(doc, i), expected[doc].word[i]) << doc;
      EXPECT_NEAR(digests->wordScore(doc, i), expected[doc].score[i], 2e-5) << doc;
    }
  }
}

TEST_F(IkIndexImplTest, Refusals) {
  const auto refused = [this](void (*action)(IkIndexImpl&)) {
    return thrownBy([&] { action(index_); });
  };
  EXPECT_EQ(refused([](IkIndexImpl& i) { i.freeze(); }),
            "Ik: Can't freeze index: no documents added or deleted");
  void (*const notYet[])(IkIndexImpl&) = {[](IkIndexImpl& i) { i.approximateExtend(0, 0); },
                                          [](IkIndexImpl& i) { i.approximateRemove(0, 0); },
                                          [](IkIndexImpl& i) { i.approximateFreeze(); },
                                          [](IkIndexImpl& i) { i.cleanup(); }};
  for (auto* action : notYet) {
    EXPECT_TRUE(refused(action).ends_with("() is not yet implemented"));
  }

  // Without documents nothing is touched; with them the old changes go.
  const std::string old = root_ + ".xw";
  writeBytes(old, "rows");
  index_.documentManager(nullptr);
  EXPECT_EQ(refused([](IkIndexImpl& i) { i.create_stage1(0, 0, 0); }),
            "Ik: Can't create_stage1 with a NULL document manager");
  EXPECT_EQ(refused([](IkIndexImpl& i) { i.create_stage12(0, 0); }),
            "Ik: Can't create_stage12 with a NULL document manager");
  EXPECT_EQ(refused([](IkIndexImpl& i) { i.extend(0, 0); }),
            "Ik: Can't create_stage12 with a NULL document manager");
  EXPECT_TRUE(SysTools::fileExists(old.c_str()));
  index_.documentManager(&documents_);
  index_.create_stage12(0, 0);
  EXPECT_FALSE(SysTools::fileExists(old.c_str()));
}

TEST_F(IkIndexImplTest, OptionsFitTheCorpus) {
  const struct {
    int documents;
    long kilobytes;
    std::vector<int> options;  // most documents and words of a merge, buffers, digests
  } cases[] = {
      {500, 0, {2500, 70000, 32768, 0}},
      {500, 1, {5000, 60000, 32768, 0}},
      {100000, 50000, {5000, 60000, 32768, 50000}},
      {100000, 60000, {5000, 60000, 65536, 50000}},
      {240040, 100001, {6001, 60000, 131072, 50000}},
      {54613, 200001, {5000, 60000, 262144, 0}},
      {54614, 400000, {5000, 60000, 262144, 30720}},
      {58255, 400001, {5000, 60000, 524288, 32768}},
      {58256, 400001, {5000, 60000, 524288, 50000}},
  };
  for (const auto& c : cases) {
    TextManager corpus(c.documents, c.kilobytes);
    IkIndexImpl index;
    index.setOptions(&corpus);
    EXPECT_EQ((std::vector<int>{index.mergeMaxDocs(), index.mergeMaxWords(), index.bufferSize(),
                                index.transposeCache()}),
              c.options)
        << c.documents;
  }
}

}  // namespace
}  // namespace vandrelle
