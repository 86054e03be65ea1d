// Changes of built indexes: the two forms of the extension, and whole changes
// through the facade.

#include "Index/IkExtender.h"

#include <cmath>
#include <functional>

#include "Fun/Fd.h"
#include "IkMergeText.h"
#include "IkTextManager.h"
#include "Index/IkDataExtenderDBM.h"
#include "Index/IkDataExtenderIndex.h"
#include "Index/IkDataFileUnpacker.h"
#include "Index/IkDeleterVector.h"
#include "Index/IkIndexImpl.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkMergeExtender.h"
#include "Index/IkMergeIndex.h"
#include "Index/IkRetriever.h"
#include "Index/IkRetrieverInput.h"
#include "Index/IkWordTable.h"
#include "Parser/PrSparseNode.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {
namespace {

class PairText : public IkDataFileUnpacker {
 public:
  void action(int doc_num, int doc_freq, float) override {
    text += ' ' + std::to_string(doc_num) + '/' + std::to_string(doc_freq);
  }
  std::string text;
};

int offsetOf(IkDataExtender* extender, const char* text) {
  const WmLocalWord word(text);
  int offset = 0;
  if (extender->lookupOffset(word.word(), &offset)) return offset;
  extender->addWord(word.word());
  EXPECT_TRUE(extender->lookupOffset(word.word(), &offset));
  return offset;
}

std::string rowAt(IkDataExtender* extender, int offset) {
  PairText row;
  extender->seek(offset);
  extender->unpackRow(&row, 1.0f);
  return row.text;
}

class IkExtenderTest : public DirectoryTest {
 protected:
  const std::string root_ = directory_ / "i";
};

using Open = std::function<IkDataExtender*(const std::string&, int)>;

void writeInfo(const std::string& root, int documents) {
  IkIndexInfo info;
  info.totalNumChunks = documents;
  info.numDigestWords = 4;
  info.minDocumentLength = 400;
  info.write((root + ".info").c_str());
}

void addTwice(const std::string& root, const Open& open) {
  writeInfo(root, 5);
  {
    const std::unique_ptr<IkDataExtender> extender(open(root, 1));
    for (const char* word : {"pear", "fig"})
      extender->addData(offsetOf(extender.get(), word), 5, 2);
    extender->addData(0x30, 5, 1);
    extender->addData(offsetOf(extender.get(), "fig"), 6, 1);
    extender->addData(0, 6, 200);
    extender->lastDocToAdd(6);
    extender->done();
    extender->seek(0x30);
    extender->scale(2.5f);
    EXPECT_EQ(extender->scale(), 2.5f);
    EXPECT_EQ(rowAt(extender.get(), 0), " 6/200");
    extender->freeze();
  }
  writeInfo(root, 7);
  const std::unique_ptr<IkDataExtender> extender(open(root, 1));
  extender->seek(0x30);
  EXPECT_EQ(extender->scale(), 2.5f);
  extender->addData(0x30, 7, 3);
  extender->addData(offsetOf(extender.get(), "apple"), 7, 1);
  extender->addData(offsetOf(extender.get(), "fig"), 7, 1);
  extender->lastDocToAdd(7);
  extender->done();
  extender->freeze();
}

TEST_F(IkExtenderTest, BothFormsKeepWhatIsAdded) {
  const Open forms[] = {
      [](const std::string& root, int mode) { return new IkDataExtenderIndex(root.c_str(), mode); },
      [](const std::string& root, int mode) { return new IkDataExtenderDBM(root.c_str(), mode); }};
  for (const Open& open : forms) {
    addTwice(root_, open);
    std::unique_ptr<IkDataExtender> extender(open(root_, 0));
    // Rows of main words, then of new ones, walked and sought.
    std::string rows;
    int numRows = 0;
    for (extender->seek(0); extender->more(); extender->next(), ++numRows) {
      EXPECT_EQ(extender->offset() < 0, numRows >= 2);
      rows += rowAt(extender.get(), extender->offset()) + ';';
    }
    EXPECT_EQ(rows.substr(0, 16), " 6/200; 5/1 7/3;");
    EXPECT_EQ(numRows, 5);
    EXPECT_EQ(rowAt(extender.get(), 0x34), "");
    EXPECT_EQ(rowAt(extender.get(), static_cast<int>(IkDataExtender::kNewWord + 3)), "");
    WmLocalWord word;
    EXPECT_FALSE(extender->lookupWord(3, word.word()));
    EXPECT_FALSE(extender->lookupWord(-1, word.word()));
    int offset = 0;
    EXPECT_FALSE(extender->lookupOffset(WmLocalWord("plum").word(), &offset));
    EXPECT_EQ(thrownBy([&] { extender->scale(1.0f); }),
              "Ik: Cannot set scale while in read-only mode.");

    const std::unique_ptr<IkDeleterVector> deleter(IkDeleterVector::Create(root_.c_str(), 8, 0));
    deleter->deleteDocument(6);
    extender->deleter(deleter.get());
    IkMergeExtender source(extender.release());
    for (bool dense : {false, true}) {
      EXPECT_EQ(contentOf(&source, dense), "apple: 7/1; fig: 5/2 7/1; pear: 5/2; ");
    }
  }
  EXPECT_EQ(thrownBy([&] { IkMergeExtenderIndex none((root_ + "none").c_str()); }),
            "Ik: Extending an existing index is unimplemented in this version of the SDK");
  EXPECT_EQ(bytesOf(root_ + ".xidx.xt").size(), 8u * 4 * 6);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory_.path()), {}), 7);
  // .info, .xidx.x?, .xw, .xd: nothing is left behind
}

TEST_F(IkExtenderTest, DamagedExtensions) {
  const Open open = [](const std::string& root, int mode) {
    return new IkDataExtenderIndex(root.c_str(), mode);
  };
  addTwice(root_, open);
  writeInfo(root_, 8);
  const auto used = [&] {
    std::unique_ptr<IkDataExtender> extender;
    return thrownBy([&] {
      extender.reset(open(root_, 0));
      for (int offset : {0, 0x30, 0x31, -1}) rowAt(extender.get(), offset);
      for (extender->seek(0); extender->more(); extender->next()) {
        rowAt(extender.get(), extender->offset());
      }
      int offset;
      extender->lookupOffset(WmLocalWord("fig").word(), &offset);
      IkMergeExtender source(extender.release());
      for (bool dense : {false, true}) contentOf(&source, dense);
      extender.reset(open(root_, 1));
      extender->done();
    });
  };
  EXPECT_EQ(used(), "");
  for (const char* suffix : {".xidx.xw", ".xidx.xo", ".xidx.xd"}) {
    const std::string sound = bytesOf(root_ + suffix);
    for (std::size_t size = 0; size < sound.size(); ++size) {
      writeBytes(root_ + suffix, sound.substr(0, size));
      // The padding of the last row isn't missed.
      EXPECT_TRUE(used() != "" || size + 4 > sound.size()) << suffix << ' ' << size;
    }
    for (std::size_t i = 0; i < sound.size(); ++i) {
      writeBytes(root_ + suffix, flipped(sound, i, 0xFF));
      used();
    }
    writeBytes(root_ + suffix, noise(1 << 16));
    used();
    writeBytes(root_ + suffix, sound);
  }
  std::remove((root_ + ".xidx.xo").c_str());
  EXPECT_EQ(used(), "Ik: The extension '" + root_ + ".xidx' is damaged");
}

const Texts kTexts = {"alpha beta alpha",  "beta gamma", " Mark|beta",    "gamma alpha beta beta",
                      "delta alpha delta", "beta aaron", "delta epsilon", " Mark|aaron beta alpha"};
const std::string kDeadCode = "Ik: Call to dead code!";

class ChangedIndexTest : public IkExtenderTest {
 protected:
  ChangedIndexTest() : documents_(kTexts), index_(root_.c_str()) {
    index_.documentManager(&documents_);
  }
  static std::string frozen(IkIndexImpl& index) {
    testing::internal::CaptureStdout();
    const std::string thrown = thrownBy([&] { index.freeze(); });
    EXPECT_TRUE(testing::internal::GetCapturedStdout().ends_with("\nFreezing...\n"));
    return thrown;
  }
  std::string rowOf(const std::string& root, const char* text, float* scale = nullptr) {
    IkLocalIndexBinder binder(root.c_str(), nullptr);
    StStoragePos position;
    if (!binder.wordTable()->lookup(WmLocalWord(text).word(), position)) return "-";
    PairText row;
    binder.indexData(0, 0)->seek(position);
    binder.indexData(0, 0)->unpackRow(&row);
    if (scale != nullptr) *scale = binder.indexData(0, 0)->scale();
    return row.text;
  }
  std::string found(const std::string& root, const char* text) {
    IkLocalIndexBinder binder(root.c_str(), nullptr);
    IkRetrieverInput input;
    input.term(*WmLocalWord(text).word())->weight = 1.0f;
    const std::unique_ptr<PrSparseNode> result(binder.retriever()->retrieve(&input, 10));
    result->sort();
    std::string text_found;
    float score;
    for (int doc = 0; result->next(&doc, &score); ++doc) text_found += ' ' + std::to_string(doc);
    return text_found;
  }
  TextManager documents_;
  IkIndexImpl index_;
};

// An index that was extended, twice, and reintegrated is the one that is built
// over all documents in one go.
TEST_F(ChangedIndexTest, ReintegrationGivesTheIndexOfOneGo) {
  index_.create_stage12(0, 3);
  index_.extend(4, 5);
  EXPECT_EQ(frozen(index_), kDeadCode);
  EXPECT_EQ(rowOf(root_, "alpha"), " 0/2 3/1 4/1");
  index_.extend(6, 7);
  EXPECT_EQ(frozen(index_), kDeadCode);
  float scale = 0;
  EXPECT_EQ(rowOf(root_, "beta", &scale), " 0/1 1/1 2/1 3/2 5/1 7/1");
  EXPECT_FLOAT_EQ(scale, std::log(9.0f / 6));
  EXPECT_EQ(rowOf(root_, "delta"), "-");
  // Lengths are at least the least length of a document.
  const std::string sums = bytesOf(root_ + ".sum");
  ASSERT_EQ(sums.size(), 8u * 4);
  for (std::size_t i = 0; i < sums.size(); i += 4) EXPECT_EQ(loadFloat(&sums[i]), 20.0f);
  EXPECT_EQ(thrownBy([&] { index_.extend(7, 8); }),
            "Ik: Can't extend by document 7: the index has 8 documents already");
  EXPECT_EQ(thrownBy([&] { index_.extend(8, 7); }), "Ik: Must extend by at least one document.");
  EXPECT_EQ(thrownBy([&] { IkMergeIndex source(root_.c_str(), nullptr, 1); }),
            "Ik: The documents that were added to '" + root_ + "' have no positions");

  const std::string fresh = root_ + "fresh";
  const std::string built = root_ + "built";
  index_.reintegrate(fresh.c_str());
  IkIndexImpl oneGo(built.c_str());
  oneGo.documentManager(&documents_);
  oneGo.recordProximity(0);
  oneGo.create_stage12(0, 0);
  for (const char* suffix :
       {".info", ".key", ".ptr", ".dat", ".idf", ".sum", ".norm", ".norm.raw"}) {
    EXPECT_EQ(bytesOf(fresh + suffix), bytesOf(built + suffix)) << suffix;
  }
  EXPECT_NE(thrownBy([&] { index_.reintegrate(root_.c_str()); }), "");

  // A new build forgets the changes of the old index.
  index_.remove(0, 0);
  EXPECT_EQ(frozen(index_), kDeadCode);
  index_.create_stage12(0, 0);
  EXPECT_EQ(rowOf(root_, "alpha"), " 0/2 3/1 4/1 7/1");
}

TEST_F(ChangedIndexTest, DeletionsReachEveryReader) {
  index_.create_stage12(0, 0);
  index_.remove(3, 4);
  index_.remove(6, 6);
  EXPECT_EQ(thrownBy([&] { index_.remove(9, 9); }),
            "Ik: Attempt to delete document (9) which isn't in index.");
  EXPECT_EQ(found(root_, "alpha"), " 0 3 4 7");  // nothing is frozen yet
  EXPECT_EQ(frozen(index_), kDeadCode);
  EXPECT_EQ(thrownBy([&] { index_.freeze(); }),
            "Ik: Can't freeze index: no documents added or deleted");
  index_.reintegrate((root_ + "fresh").c_str());
  IkIndexInfo info;
  for (const char* name : {"", "fresh"}) {
    const std::string root = root_ + name;
    info.read((root + ".info").c_str());
    EXPECT_EQ(info.numDeletedChunks, 3);
    EXPECT_EQ(info.totalNumChunks, 8);
    float scale = 0;
    EXPECT_EQ(rowOf(root, "alpha", &scale), " 0/2 7/1");
    EXPECT_FLOAT_EQ(scale, std::log(6.0f / 2));
    EXPECT_EQ(found(root, "alpha"), " 0 7");
    EXPECT_EQ(found(root, "delta"), "");
    EXPECT_EQ(rowOf(root, "delta"), *name == '\0' ? "" : "-");
  }
  // Nothing was added: positions were taken along.
  EXPECT_NE(bytesOf(root_ + "fresh.prx"), "");
  // Holes in the numbers are deleted documents.
  const std::string head = root_ + "fresh";
  IkIndexImpl extended(head.c_str());
  TextManager longer(Texts(12, "alpha"));
  extended.documentManager(&longer);
  extended.remove(0, 0);
  extended.extend(10, 11);
  EXPECT_EQ(frozen(extended), kDeadCode);
  EXPECT_EQ(rowOf(head, "alpha"), " 7/1 10/1 11/1");
  EXPECT_EQ(bytesOf(head + ".xk"), std::string("\0\0\0\xC\0\0\0\6\x9A\xC0", 10));
  info.read((head + ".info").c_str());
  EXPECT_EQ(info.numDeletedChunks, 6);
}

// A change whose last files can't be written is made anew.
TEST_F(ChangedIndexTest, AFailedChangeCanBeRepeated) {
  index_.create_stage12(0, 3);
  const std::string sums = bytesOf(root_ + ".sum");
  std::filesystem::remove(root_ + ".sum");
  std::filesystem::create_directory(root_ + ".sum");
  index_.extend(4, 6);
  EXPECT_NE(frozen(index_), kDeadCode);
  std::filesystem::remove(root_ + ".sum");
  writeBytes(root_ + ".sum", sums);
  index_.extend(4, 5);
  EXPECT_EQ(frozen(index_), kDeadCode);
  EXPECT_EQ(rowOf(root_, "alpha"), " 0/2 3/1 4/1");
  index_.reintegrate((root_ + "fresh").c_str());
  EXPECT_EQ(rowOf(root_ + "fresh", "delta"), " 4/2");
  EXPECT_EQ(rowOf(root_ + "fresh", "epsilon"), "-");
}

// A build or a merge leaves nothing of the index that was there, and drops what was
// begun on it.
TEST_F(ChangedIndexTest, NewIndexesForgetTheirChanges) {
  const std::string other = root_ + "other";
  IkIndexImpl target(other.c_str());
  target.documentManager(&documents_);
  target.create_stage12(0, 0);
  target.remove(0, 2);
  EXPECT_EQ(frozen(target), kDeadCode);
  target.remove(3, 3);
  index_.create_stage12(0, 0);
  const std::unique_ptr<FdBag> roots(Fd::Queue());
  roots->insert(root_.c_str(), static_cast<int>(root_.size()) + 1, nullptr, 0);
  target.mergeAdditive(roots.get(), 0, nullptr);
  EXPECT_EQ(rowOf(other, "alpha"), " 0/2 3/1 4/1 7/1");
  EXPECT_NE(thrownBy([&] { target.freeze(); }), kDeadCode);
}

// Documents without words make an extension without rows.
TEST_F(ChangedIndexTest, AddsDocumentsWithoutWords) {
  Texts texts = kTexts;
  texts.resize(10);
  TextManager longer(texts);
  index_.documentManager(&longer);
  index_.create_stage12(0, 0);
  index_.extend(8, 9);
  EXPECT_EQ(frozen(index_), kDeadCode);
  EXPECT_EQ(rowOf(root_, "alpha"), " 0/2 3/1 4/1 7/1");
  index_.reintegrate((root_ + "fresh").c_str());
  EXPECT_EQ(bytesOf(root_ + "fresh.norm").size(), 10u);
}

}  // namespace
}  // namespace vandrelle
