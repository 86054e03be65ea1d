#include "Index/IkMergeIndex.h"

#include "Index/IkException.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkMergeDeleter.h"
#include "Index/IkProxBinder.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Tool/NameManager.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

std::string IkMergeIndex::newWordNumbersFile(const std::string& root, int source) {
  char suffix[20];
  std::snprintf(suffix, sizeof suffix, ".tmp.%.4x", static_cast<unsigned>(source));
  return root + suffix;
}

IkMergeIndex::IkMergeIndex(const char* rootname, const char* newWordNumbersFile,
                           int recordProximity) {
  NameManager name(rootname);
  keyfile_.reset(KfKeyFileManager::KdBind(name.suffix(nullptr)));
  maxWords_ = keyfile_->Num_Entries();
  matrixData_ = std::make_unique<IkDataFileBinder>();
  matrixData_->bind(rootname, 0, 0);
  info_.read(name.suffix(".info"));
  // The number of documents may itself have been deleted, see IkDeleterVector.
  if (info_.totalNumChunks < 0 || info_.numDeletedChunks < 0 ||
      info_.numDeletedChunks - 1 > info_.totalNumChunks) {
    THROW(Ik, "The file '" << name.suffix(".info") << "' holds a count out of range");
  }
  source_.numChunks = info_.totalNumChunks;
  source_.deleted = matrixData_->deleter();
  if (newWordNumbersFile != nullptr) {
    newWordNumbers_ = std::fopen(newWordNumbersFile, "wb");
    if (newWordNumbers_ == nullptr) THROW(Ik, "Couldn't open " << newWordNumbersFile);
  }
  if (recordProximity) {
    if (matrixData_->extender() != nullptr) {
      THROW(Ik, "The documents that were added to '" << rootname << "' have no positions");
    }
    proxBinder_ = new IkProxBinder(name.suffix(".prx"));
    source_.positions = proxBinder_;
  }
}

IkMergeIndex::~IkMergeIndex() {
  if (newWordNumbers_ != nullptr) std::fclose(newWordNumbers_);
}

void IkMergeIndex::reset() {
  currentWord_ = 0;
  if (proxBinder_ != nullptr) proxBinder_->seek(StStoragePos());
}

const WmWord* IkMergeIndex::word() {
  while (readWord()) {
    if (!readOffset()) {
      LOG(0, 0, "Couldn't find offset for word=" << *word_);
    } else if (!isExcluded()) {
      return word_.word();
    }
    newWordNumber(-1);
  }
  // No number follows the one of the last word.
  if (newWordNumbers_ != nullptr && std::fflush(newWordNumbers_) != 0) sideFileFailed();
  return nullptr;
}

bool IkMergeIndex::readWord() {
  if (currentWord_ >= maxWords_) return false;
  if (!keyfile_->Lookup(currentWord_, word_.word())) {
    THROW(Ik, "Couldn't find word=" << currentWord_ << " in keyfile");
  }
  ++currentWord_;
  return true;
}

bool IkMergeIndex::readOffset() {
  unsigned char value[IkLocalWordTable::kMaxDataSize];
  const int32 size = IkLocalWordTable::lookupData(keyfile_.get(), word_.word(), value);
  if (size < 0) return false;
  if (size != 4 && size != 5) THROW(Ik, "Bogus value!");
  currentOffset_ = IkLocalWordTable::pos(value, size);
  return true;
}

// Positions are read in step with the rows: those of a word that is left out
// must be passed over.
bool IkMergeIndex::isExcluded() {
  if (excluder_ == nullptr || !excluder_->excludes(word_.word())) return false;
  if (proxBinder_ != nullptr) {
    proxBinder_->seek(proxBinder_->map()->lookup(static_cast<uint32>(currentWord_)));
  }
  return true;
}

void IkMergeIndex::seekRow() {
  if (matrixData_->tell() != currentOffset_) matrixData_->seek(currentOffset_);
  if (matrixData_->tell() != currentOffset_ || !matrixData_->more()) {
    THROW(Ik, "The row of word=" << *word_ << " is outside of the row data file");
  }
}

int IkMergeIndex::maxElements() {
  seekRow();
  if (matrixData_->extendedData() && matrixData_->extender() != nullptr) return -1;
  return static_cast<int>(matrixData_->linesize() - IkDataFileFormat::kHeaderSize);
}

// Deleted documents reach the unpacker, too, since it must pass over their
// positions.
template <typename Unpacker>
void IkMergeIndex::unpackRow(Unpacker* unpacker) {
  seekRow();
  const float scale = matrixData_->scale();
  matrixData_->unpackAllPairs(
      [&](int doc_num, int doc_freq) { unpacker->action(doc_num, doc_freq, scale); });
  if (matrixData_->extendedData() && matrixData_->extender() != nullptr) {
    matrixData_->extender()->seek(static_cast<int>(matrixData_->offset()));
    matrixData_->extender()->unpackRow(unpacker, scale);
  }
}

void IkMergeIndex::unpack(int* row, int rowSize, int* total_num, IkProxCreator* prox) {
  IkMergeIndexUnpacker unpacker(source_, rowSize, row, total_num,
                                proxBinder_ != nullptr ? prox : nullptr);
  unpackRow(&unpacker);
}

void IkMergeIndex::unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator* prox) {
  IkMergeIndexSparseUnpacker unpacker(source_, start, total_num,
                                      proxBinder_ != nullptr ? prox : nullptr);
  unpackRow(&unpacker);
}

void IkMergeIndex::newWordNumber(int n) {
  if (newWordNumbers_ == nullptr) return;
  unsigned char bytes[4];
  storeS32(bytes, n);
  if (std::fwrite(bytes, 1, sizeof bytes, newWordNumbers_) != sizeof bytes) sideFileFailed();
}

void IkMergeIndex::sideFileFailed() { THROW(IkIO, "Couldn't write the new word numbers"); }

}  // namespace vandrelle
