#include "Index/IkDataMerger.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "IkTestTools.h"
#include "Index/IkDataTempMerger.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkIndexer.h"
#include "Word.h"

namespace vandrelle {
namespace {

using Text = std::vector<std::string>;  // a document a line, a word a blank

const Text kTexts = {"the quick brown fox", "the lazy dog", "a dog a day",
                     "quick quick quick",   "the end",      "brown dog brown fox"};

using WordTest = std::function<bool(const std::string&)>;

void addText(IkIndexer* indexer, int chunk, const std::string& text, const WordTest& wanted) {
  int position = 0;
  std::string word;
  for (const char c : text + " ") {
    if (c != ' ') {
      word += c;
      continue;
    }
    if (wanted(word)) indexer->addTerm(WmLocalWord(word.c_str()).word(), chunk, position);
    ++position;
    word.clear();
  }
}

// An index of the texts `first` to `last`, numbered from `firstChunk`, of the
// wanted words only.
std::string indexOf(const char* name, int first, int last, int firstChunk, const WordTest& wanted) {
  const std::string root = testing::TempDir() + name;
  std::remove((root + ".xk").c_str());
  IkIndexer indexer(root.c_str());
  for (int i = first; i <= last; ++i) {
    addText(&indexer, firstChunk + i - first, kTexts[static_cast<std::size_t>(i)], wanted);
  }
  indexer.makeIndex();
  return root;
}

bool everyWord(const std::string&) { return true; }

void expectSameIndex(const std::string& root, const std::string& expected) {
  for (const char* suffix : {".info", ".dat", ".key", ".ptr", ".idf", ".sum", ".norm", ".norm.raw",
                             ".prx", ".prx.map"}) {
    EXPECT_EQ(bytesOf(root + suffix), bytesOf(expected + suffix)) << suffix;
    EXPECT_NE(bytesOf(root + suffix), "") << suffix;
  }
}

TEST(IkDataMerger, HalvesGiveTheWholeIndex) {
  const std::string whole = indexOf("whole", 0, 5, 0, everyWord);
  const std::string first = indexOf("first", 0, 2, 0, everyWord);
  const std::string second = indexOf("second", 3, 5, 0, everyWord);
  const std::string merged = testing::TempDir() + "merged";
  const std::string side = merged + ".tmp.0001";
  {
    IkDataMerger merger(merged.c_str());
    merger.additiveMode(true);
    merger.addIndex(first.c_str(), nullptr, nullptr);
    merger.addIndex(second.c_str(), side.c_str(), nullptr);
    merger.makeIndex();
  }
  expectSameIndex(merged, whole);
  // brown dog end fox quick the, of: a brown day dog end fox lazy quick the
  EXPECT_EQ(bytesOf(side), std::string("\0\0\0\1\0\0\0\3\0\0\0\4\0\0\0\5\0\0\0\7\0\0\0\x8", 24));
}

TEST(IkDataMerger, WordsOfTheSameDocumentsGiveTheWholeIndex) {
  const std::string whole = indexOf("allwords", 0, 5, 0, everyWord);
  const std::string early = indexOf("early", 0, 5, 0, [](const std::string& w) { return w < "e"; });
  const std::string late = indexOf("late", 0, 5, 0, [](const std::string& w) { return w >= "e"; });
  const std::string merged = testing::TempDir() + "rejoined";
  {
    IkDataMerger merger(merged.c_str());
    merger.addIndex(early.c_str(), nullptr, nullptr);
    merger.addIndex(late.c_str(), nullptr, nullptr);
    merger.makeIndex();
  }
  expectSameIndex(merged, whole);
}

// Leaves the first text of its source out.
class OmitsTheFirst : public IkMergeDeleter {
 public:
  int newChunk(int chunk) override { return chunk == 0 ? kGone : chunk - 1; }
  int numDeletedChunks() override { return 1; }
};

TEST(IkDataMerger, OmittedDocumentsLeaveNoTrace) {
  const std::string rest = indexOf("rest", 1, 5, 0, everyWord);
  const std::string first = indexOf("omitted", 0, 2, 0, everyWord);
  const std::string second = indexOf("kept", 3, 5, 0, everyWord);
  const std::string merged = testing::TempDir() + "without";
  OmitsTheFirst omits;
  {
    IkDataMerger merger(merged.c_str());
    merger.additiveMode(true);
    merger.addIndex(first.c_str(), nullptr, &omits);
    merger.addIndex(second.c_str(), nullptr, nullptr);
    merger.makeIndex();
  }
  expectSameIndex(merged, rest);
}

TEST(IkDataTempMerger, TemporaryFilesFollowAnIndex) {
  const std::string whole = indexOf("everything", 0, 5, 0, everyWord);
  const std::string first = indexOf("finished", 0, 2, 0, everyWord);
  const std::string second = indexOf("running", 3, 5, 3, everyWord);
  const std::string merged = testing::TempDir() + "continued";
  {
    IkDataTempMerger merger(merged.c_str());
    merger.addIndex(first.c_str());
    merger.addTempFile((second + ".tmp000").c_str());
    merger.addTempFile((second + ".tmp777").c_str());
    merger.lastTempfileDoc(5);
    merger.makeIndex();
  }
  expectSameIndex(merged, whole);
}

TEST(IkDataMerger, WordsComeFromSourcesOnly) {
  const std::string root = testing::TempDir() + "terms";
  IkDataMerger merger(root.c_str());
  EXPECT_EQ(thrownBy([&] { merger.addTerm(nullptr, 0, 0); }),
            "Ik: IkDataMerger::addTerm(const WmWord*, int, int) is unimplemented");
  IkDataTempMerger tempMerger(root.c_str());
  EXPECT_EQ(thrownBy([&] { tempMerger.addTerm(nullptr, 0, 0); }),
            "Fatal: IkDataTempMerger::addTerm(const WmWord*, int, int) is unimplemented");
}

}  // namespace
}  // namespace vandrelle
