#include "Index/IkDataExtenderIndex.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "Index/IkDataFileBinder.h"
#include "Index/IkDataFileCreator.h"
#include "Index/IkDigestBuilder.h"
#include "Index/IkException.h"
#include "Index/IkExtensionUnpackers.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkIndexer.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkMergeTempfile.h"
#include "Index/IkMerger.h"
#include "Index/IkTranspose.h"
#include "KeyFile/KdFileALAccessor.h"
#include "KeyFile/KfKeyFileManager.h"

namespace vandrelle {

namespace {

constexpr char kContinued = '\1';  // first letter of a continued row's name
constexpr int kOffsetDigits = 8;
// Digests that are built in memory at once, and how many where all are more.
constexpr long long kDigestEntries = 0x500000;
constexpr int kDigestRange = 50000;

struct Member {
  const char* shadow;
  const char* place;
};
constexpr Member kMembers[] = {
    {".new.key", ".xw"}, {".new.ptr", ".xo"}, {".new.dat", ".xd"}, {".new.trp", ".xt"}};

bool isContinued(const WmWord* name) { return name->letter(0) == kContinued; }

WmLocalWord continuedName(int offset) {
  char name[1 + kOffsetDigits + 1];
  std::snprintf(name, sizeof name, "%c%08x", kContinued, static_cast<unsigned>(offset));
  return WmLocalWord(name);
}

// The offset in the name of a continued row, or -1 if it isn't one.
int offsetIn(const WmWord* name) {
  if (name->num_letters() != 1 + kOffsetDigits) return -1;
  const std::string digits(name->letters() + 1, kOffsetDigits);
  if (digits.find_first_not_of("0123456789abcdef") != std::string::npos) return -1;
  return static_cast<int>(std::strtoul(digits.c_str(), nullptr, 16));
}

int newWordOffset(int number) {
  return static_cast<int>(IkDataExtender::kNewWord | static_cast<unsigned>(number));
}

// The number of a new word, or -1 for the offset of a main row.
int newWordNumber(int offset) {
  const unsigned bits = static_cast<unsigned>(offset);
  return bits & IkDataExtender::kNewWord ? static_cast<int>(bits & ~IkDataExtender::kNewWord) : -1;
}

}  // namespace

// The rows there are, as a source of the merger. A change whose last files could not
// be written has left documents behind that the index doesn't know, from `numDocs` on:
// they are dropped, as the next change brings them again.
class IkDataExtenderIndex::FrozenRows : public IkMergeObject {
 public:
  FrozenRows(IkDataExtenderIndex* rows, int numDocs) : rows_(rows), numDocs_(numDocs) {}

  void reset() override { row_ = 0; }
  const WmWord* word() override {
    if (row_ >= rows_->numRows()) return nullptr;
    rows_->seekRow(row_);
    return rows_->xwordtable_->word(row_++);
  }
  int maxElements() override { return static_cast<int>(rows_->xdatafile_->dataSize()); }
  void unpack(int* row, int rowSize, int* total_num, IkProxCreator*) override {
    IkCountingUnpacker counter(rowSize, row, total_num);
    rows_->xdatafile_->unpackAllPairs([&](int doc_num, int doc_freq) {
      if (doc_num < numDocs_) counter.action(doc_num, doc_freq, 0.0f);
    });
  }
  void unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator*) override {
    rows_->xdatafile_->unpackAllPairs([&](int doc_num, int doc_freq) {
      if (doc_num < numDocs_) start[(*total_num)++] = {doc_num, doc_freq};
    });
  }

 private:
  IkDataExtenderIndex* rows_;
  int numDocs_;
  int row_ = 0;
};

bool IkDataExtenderIndex::exists(const char* rootname) {
  return SysTools::fileExists(NameManager(rootname).suffix(".xidx.xw"));
}

IkDataExtenderIndex::IkDataExtenderIndex(const char* rootname, int mode)
    : name_((std::string(rootname) + ".xidx").c_str()), main_(rootname), mode_(mode) {
  if (exists(rootname)) bindFiles(".xw", ".xo", ".xd");
}

IkDataExtenderIndex::~IkDataExtenderIndex() {
  if (mode_ == 0) return;
  if (indexer_) {
    indexer_->discard();
    removeTempfiles();
  }
  if (completed_) {
    for (const Member& member : kMembers) SysTools::removeFile(name_.suffix(member.shadow));
  }
}

void IkDataExtenderIndex::bindFiles(const char* words, const char* offsets, const char* data) {
  std::ifstream pointers(name_.suffix(offsets), std::ios::binary);
  if (!pointers) damaged();
  const int keyfile = ::open(name_.suffix(words), O_RDONLY | O_CLOEXEC);
  if (keyfile < 0) damaged();
  keyfile_ = std::make_unique<KdFileALAccessorCon>(&pointers, keyfile);
  if (keyfile_->Data_Size() != IkLocalWordTable::kDataSize) damaged();
  xwordtable_ = std::make_unique<IkLocalWordTable>(keyfile_.get(), nullptr);
  countContinuedRows();
  xdatafile_ = std::make_unique<IkDataFileBinder>();
  xdatafile_->bindFile(name_.suffix(data), completed_ ? 1 : 0, 0);
  seekRow(0);
}

void IkDataExtenderIndex::countContinuedRows() {
  int start = 0;
  int finish = keyfile_->Num_Entries();
  while (start < finish) {
    const int half = start + (finish - start) / 2;
    const WmWord* name = xwordtable_->word(half);
    if (name == nullptr) damaged();
    (isContinued(name) ? start : finish) = isContinued(name) ? half + 1 : half;
  }
  numContinued_ = start;
  numFrozenWords_ = keyfile_->Num_Entries() - start;
}

int IkDataExtenderIndex::numRows() const { return numContinued_ + numFrozenWords_; }

void IkDataExtenderIndex::damaged() const {
  THROW(Ik, "The extension '" << name_.suffix(nullptr) << "' is damaged");
}

void IkDataExtenderIndex::requireMode() const {
  if (mode_ == 0) THROW(Ik, "Cannot change an extension while in read-only mode.");
}

void IkDataExtenderIndex::requireOpen() const {
  requireMode();
  if (completed_) THROW(Ik, "Freeze the extension before it is extended again");
}

void IkDataExtenderIndex::addWord(const WmWord* word) {
  requireOpen();
  if (!word->valid() || isContinued(word)) THROW(Ik, "The word '" << *word << "' can't be added");
  newWords_.add(word);
}

int IkDataExtenderIndex::lookupOffset(const WmWord* word, int* offset) {
  if (!word->valid() || isContinued(word)) return 0;
  const int row = keyfile_ ? xwordtable_->wordNum(word) : -1;
  int number = row - numContinued_;
  if (row < 0) {
    number = newWords_.find(word);
    if (number < 0) return 0;
    number += numFrozenWords_;
  }
  *offset = newWordOffset(number);
  return 1;
}

int IkDataExtenderIndex::lookupWord(int word_num, WmWord* word) {
  if (word_num < 0 || word_num >= numFrozenWords_ + newWords_.count()) return 0;
  if (word_num < numFrozenWords_) return keyfile_->Lookup(numContinued_ + word_num, word);
  new (word) WmWord(*newWords_.word(word_num - numFrozenWords_));
  return 1;
}

void IkDataExtenderIndex::addData(int offset, int doc_num, int doc_freq) {
  requireOpen();
  if (indexer_ == nullptr) {
    removeTempfiles();
    indexer_ = std::make_unique<IkIndexer>(name_.suffix(nullptr));
    indexer_->recordProximity(0);
  }
  WmLocalWord term;
  const int number = newWordNumber(offset);
  if (number < 0) {
    term = continuedName(offset);
  } else if (!lookupWord(number, term.word())) {
    THROW(Ik, "The extension has no word " << number);
  }
  for (int i = 0; i < doc_freq; ++i) indexer_->addTerm(term.word(), doc_num, 0);
}

void IkDataExtenderIndex::removeTempfiles() {
  const std::string root = name_.suffix(nullptr);
  int number = 0;
  while (SysTools::removeFile(IkIndexer::tempfileName(root, number).c_str())) ++number;
}

void IkDataExtenderIndex::done() {
  requireMode();
  if (completed_) return;
  IkIndexInfo info;
  info.read(main_.suffix(".info"));
  numDocs_ = std::max(info.totalNumChunks, lastDocToAdd_ + 1);
  if (indexer_) indexer_->flushTempfiles();
  const int numFiles = indexer_ ? indexer_->filenum() : 0;
  {
    IkMerger merger(numFiles + (keyfile_ ? 1 : 0));
    int source = 0;
    if (keyfile_) merger.mergeObject(source++, new FrozenRows(this, info.totalNumChunks));
    for (int i = 0; i < numFiles; ++i) {
      const std::string file = IkIndexer::tempfileName(name_.suffix(nullptr), i);
      merger.mergeObject(source++, new IkMergeTempfile(file.c_str(), nullptr));
    }
    std::vector<int> row(static_cast<std::size_t>(numDocs_));
    merger.row(row.data());
    merger.rowSize(numDocs_);
    completed_ = true;
    mergeRows(&merger, row, info.bufferSize);
  }
  newWords_.clear();
  indexer_.reset();
  removeTempfiles();
  bindFiles(kMembers[0].shadow, kMembers[1].shadow, kMembers[2].shadow);
}

void IkDataExtenderIndex::mergeRows(IkMerger* merger, const std::vector<int>& row, int bufferSize) {
  IkDataFileCreator rows;
  rows.create(name_.suffix(kMembers[2].shadow), bufferSize);
  const std::unique_ptr<KdFileCreator> names(
      KfKeyFileManager::KdCreate(name_.suffix(".new"), IkLocalWordTable::kChunkSize, kKdConstant,
                                 IkLocalWordTable::kDataSize));
  for (merger->reset(); merger->more(); merger->next()) {
    const int pairs = merger->sparseSize();
    const auto isThere = [](int freq) { return freq != 0; };
    if (pairs == 0 || (pairs < 0 && std::none_of(row.begin(), row.end(), isThere))) continue;
    unsigned char place[IkLocalWordTable::kDataSize];
    IkLocalWordTable::storePos(place, rows.offset());
    names->Add_Entry(merger->word(), place, sizeof place);
    if (pairs >= 0) {
      rows.writeRow(reinterpret_cast<const IkDocumentInfo*>(row.data()), pairs, 0.0f);
    } else {
      rows.writeRow(row.data(), static_cast<int>(row.size()), 0.0f);
    }
  }
}

void IkDataExtenderIndex::freeze() {
  requireMode();
  if (!completed_) return;
  writeDigests();
  for (const Member& member : kMembers) {
    const std::string shadow = name_.suffix(member.shadow);
    if (!SysTools::fileExists(shadow.c_str())) continue;
    const char* place = name_.suffix(member.place);
    if (std::rename(shadow.c_str(), place) != 0) {
      THROW(IkIO, "Couldn't rename '" << shadow << "' to '" << place << "'");
    }
  }
  completed_ = false;
}

void IkDataExtenderIndex::writeDigests() {
  IkIndexInfo info;
  info.read(main_.suffix(".info"));
  const int digestSize = info.numDigestWords;
  if (numDocs_ <= 0 || digestSize <= 0 || digestSize > IkDigestBuilder::kMaxDigestSize) return;
  std::vector<float> sums(static_cast<std::size_t>(numDocs_));
  IkCalculateSums adder(numDocs_, sums.data());
  for (int row = 0; row < numRows(); ++row) {
    seekRow(row);
    xdatafile_->unpackRow(&adder);
  }
  for (float& sum : sums) sum = std::sqrt(sum);
  IkTranspose digests(numDocs_, digestSize);
  digests.create(xdatafile_.get(), keyfile_.get(), sums.data(), name_.suffix(kMembers[3].shadow),
                 3LL * digestSize * numDocs_ > kDigestEntries ? kDigestRange : 0);
}

int IkDataExtenderIndex::rowAt(int offset) {
  if (keyfile_ == nullptr) return -1;
  const int number = newWordNumber(offset);
  if (number >= 0) return number < numFrozenWords_ ? numContinued_ + number : -1;
  return xwordtable_->wordNum(continuedName(offset).word());
}

void IkDataExtenderIndex::seekRow(int row) {
  row_ = row;
  validOffset_ = 0;
  if (row < 0 || row >= numRows()) return;
  const WmWord* name = xwordtable_->word(row);
  StStoragePos position;
  if (name == nullptr || !xwordtable_->lookup(name, position)) damaged();
  xdatafile_->seek(position);
  if (xdatafile_->tell() != position || !xdatafile_->more()) damaged();
  curOffset_ = row < numContinued_ ? offsetIn(name) : newWordOffset(row - numContinued_);
  if (row < numContinued_ && curOffset_ < 0) damaged();
  validOffset_ = 1;
}

void IkDataExtenderIndex::seek(int offset) { seekRow(rowAt(offset)); }

int IkDataExtenderIndex::next() {
  if (validOffset_) seekRow(row_ + 1);
  return validOffset_;
}

float IkDataExtenderIndex::scale() { return validOffset_ ? xdatafile_->scale() : 0.0f; }

void IkDataExtenderIndex::scale(float value) {
  if (!completed_) THROW(Ik, "Cannot set scale while in read-only mode.");
  if (!validOffset_) return;
  xdatafile_->scale(value);
  xdatafile_->storeHeader();
}

void IkDataExtenderIndex::unpackRow(IkDataFileUnpacker* functor, float scale) {
  if (!validOffset_) return;
  xdatafile_->loadRow();
  IkDataFile::unpackBuffer(xdatafile_->rowData(), static_cast<int>(xdatafile_->dataSize()), scale,
                           functor, deleter(), nullptr);
}

}  // namespace vandrelle
