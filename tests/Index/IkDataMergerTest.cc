#include "Index/IkDataMerger.h"

#include <cstdio>
#include <functional>
#include <sstream>

#include "Fun/Fd.h"
#include "Fun/FdBag.h"
#include "IkTestTools.h"
#include "Index/IkDataTempMerger.h"
#include "Index/IkIndexImpl.h"
#include "Index/IkIndexer.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkTranspose.h"
#include "Index/IkTransposeCreator.h"
#include "Index/IkTransposeMerger.h"
#include "Index/IkWordTable.h"
#include "Tool/SysTools.h"

namespace vandrelle {
namespace {

// A document a line, a word a blank.
const std::vector<std::string> kTexts = {
    "the quick brown fox", "the lazy dog", "a dog a day",
    "quick quick quick",   "the end",      "brown dog brown fox"};

using WordTest = std::function<bool(const std::string&)>;

// An index of the texts `first` to `last`, numbered from `firstChunk`, of the
// wanted words only.
std::string indexOf(const char* name, int first, int last, int firstChunk, const WordTest& wanted) {
  const std::string root = testing::TempDir() + name;
  std::remove((root + ".xk").c_str());
  IkIndexer indexer(root.c_str());
  for (int i = first; i <= last; ++i) {
    std::istringstream words(kTexts[static_cast<std::size_t>(i)]);
    int position = 0;
    for (std::string word; words >> word; ++position) {
      if (!wanted(word)) continue;
      indexer.addTerm(WmLocalWord(word.c_str()).word(), firstChunk + i - first, position);
    }
  }
  indexer.makeIndex();
  return root;
}

bool everyWord(const std::string&) { return true; }

struct Source {
  std::string root;
  IkMergeDeleter* omits = nullptr;
};

std::string mergeOf(const char* name, bool additive, const std::vector<Source>& sources) {
  const std::string root = testing::TempDir() + name;
  IkDataMerger merger(root.c_str());
  merger.additiveMode(additive);
  for (const Source& source : sources) {
    merger.addIndex(source.root.c_str(), nullptr, source.omits);
  }
  merger.makeIndex();
  return root;
}

void expectSameIndex(const std::string& root, const std::string& expected) {
  for (const char* suffix : {".info", ".dat", ".key", ".ptr", ".idf", ".sum", ".norm", ".norm.raw",
                             ".prx", ".prx.map"}) {
    EXPECT_EQ(bytesOf(root + suffix), bytesOf(expected + suffix)) << suffix;
    EXPECT_NE(bytesOf(root + suffix), "") << suffix;
  }
}

TEST(IkDataMerger, WordsOfTheSameDocumentsGiveTheWholeIndex) {
  const std::string whole = indexOf("allwords", 0, 5, 0, everyWord);
  const std::string early = indexOf("early", 0, 5, 0, [](const std::string& w) { return w < "e"; });
  const std::string late = indexOf("late", 0, 5, 0, [](const std::string& w) { return w >= "e"; });
  expectSameIndex(mergeOf("rejoined", false, {{early}, {late}}), whole);
}

// Word and value of each entry of a document's digest, "word/value " each.
std::string digestOf(const std::string& root, int doc) {
  IkLocalIndexBinder binder(root.c_str(), nullptr);
  IkTranspose* const digests = binder.transpose();
  std::ostringstream text;
  for (int i = 0; i < digests->digestSize(); ++i) {
    const int value = digests->wordValue(doc, i);
    if (value == 0) continue;
    text << *binder.wordTable()->word(digests->wordNum(doc, i)) << '/' << value << ' ';
  }
  return text.str();
}

TEST(IkIndexImpl, MergesHalvesAndTheirDigestsIntoTheWholeIndex) {
  const std::string whole = indexOf("wholetrp", 0, 5, 0, everyWord);
  const std::string roots[] = {indexOf("firsttrp", 0, 2, 0, everyWord),
                               indexOf("secondtrp", 3, 5, 0, everyWord)};
  std::unique_ptr<FdBag> bag(Fd::Queue());
  for (const std::string& root : roots) {
    IkTransposeCreator(root.c_str()).makeIndex();
    bag->insert(root.c_str(), static_cast<int>(root.size()) + 1, nullptr, 0);
  }
  const std::string merged = testing::TempDir() + "mergedtrp";
  IkIndexImpl index;
  index.name(merged.c_str());
  index.mergeMaxDocs(100000);  // as the parts have it
  index.mergeMaxWords(10000);
  index.mergeAdditive(bag.get(), 1, nullptr);
  expectSameIndex(merged, whole);
  // brown dog end fox quick the, of: a brown day dog end fox lazy quick the
  EXPECT_EQ(bytesOf(merged + ".tmp.0001"),
            std::string("\0\0\0\1\0\0\0\3\0\0\0\4\0\0\0\5\0\0\0\7\0\0\0\x8", 24));
  index.mergeTranspose(bag.get());
  for (int doc = 0; doc < 6; ++doc) {
    EXPECT_EQ(digestOf(merged, doc), digestOf(roots[doc / 3], doc % 3)) << doc;
  }
  EXPECT_FALSE(SysTools::fileExists((merged + ".tmp.0000").c_str()));
  EXPECT_FALSE(SysTools::fileExists((merged + ".tmp.0001").c_str()));

  // Made anew they are those of the whole, however many documents a pass takes.
  IkTransposeCreator(whole.c_str()).makeIndex();
  index.mergeAdditive(bag.get(), 1, nullptr);
  for (const int range : {1, 2, 100}) {
    IkTransposeMerger digests(merged.c_str(), range);
    digests.addIndex(roots[0].c_str(), (merged + ".tmp.0000").c_str(), 0);
    digests.addIndex(roots[1].c_str(), (merged + ".tmp.0001").c_str(), 3);
    digests.done();
    EXPECT_EQ(bytesOf(merged + ".trp"), bytesOf(whole + ".trp")) << range;
  }
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
  OmitsTheFirst omits;
  expectSameIndex(mergeOf("without", true, {{first, &omits}, {second}}), rest);
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

}  // namespace
}  // namespace vandrelle
