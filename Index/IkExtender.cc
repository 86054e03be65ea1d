#include "Index/IkExtender.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <iostream>

#include "Index/IkDataExtenderIndex.h"
#include "Index/IkDataFileBinder.h"
#include "Index/IkDeleterVector.h"
#include "Index/IkException.h"
#include "Index/IkExtensionUnpackers.h"
#include "Index/IkLocalWordTable.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Tool/Timer.h"

namespace vandrelle {

IkExtender::IkExtender(const char* rootname) : IkCreatorImpl(rootname) {
  info_.read(name_.suffix(".info"));
  if (info_.totalNumChunks < 0) {
    THROW(Ik, "The file '" << name_.suffix(".info") << "' holds a count out of range");
  }
  keyfile_.reset(KfKeyFileManager::KdBind(name_.suffix(nullptr)));
}

IkExtender::~IkExtender() = default;

void IkExtender::closeObjects() {
  extender_ = nullptr;
  deleter_ = nullptr;
  matrixData_.reset();
  keyfile_.reset();
}

void IkExtender::initObjects() {
  if (matrixData_ != nullptr) return;
  auto rows = std::make_unique<IkDataFileBinder>();
  rows->bind(name_.suffix(nullptr), 1, 0);
  extender_ = rows->extender();
  matrixData_ = std::move(rows);
}

void IkExtender::addDocuments(DcDocumentManager* dm, int first, int last) {
  if (last < first) THROW(Ik, "Must extend by at least one document.");
  if (last == INT_MAX) THROW(Ik, "There are no indexes with a document " << last);
  const int before = info_.totalNumChunks;
  if (first < before) {
    THROW(Ik, "Can't extend by document " << first << ": the index has " << before
                                          << " documents already");
  }
  initObjects();
  if (extender_ == nullptr) {
    extender_ = new IkDataExtenderIndex(name_.suffix(nullptr), 1);
    matrixData_->extender(extender_);
  }
  info_.totalNumChunks = last + 1;
  if (deleter_ != nullptr) deleter_->grow(info_.totalNumChunks);
  for (int chunk = before; chunk < first; ++chunk) deleteDocument(chunk);
  IkCreatorImpl::addDocuments(dm, first, last);
  extender_->lastDocToAdd(info_.totalNumChunks - 1);
}

void IkExtender::addTerm(const WmWord* word, int chunk, int) {
  if (!word->valid()) return;
  // An index without documents is extended by all there are.
  info_.totalNumChunks = std::max(info_.totalNumChunks, chunk + 1);
  int offset = 0;
  unsigned char value[IkLocalWordTable::kMaxDataSize];
  const int32 size = IkLocalWordTable::lookupData(keyfile_.get(), word, value);
  if (size >= 0) {
    const StStoragePos position = IkLocalWordTable::pos(value, size);
    if (position.Hi() != 0 || (position.Lo() & IkDataExtender::kNewWord) != 0) {
      THROW(Ik, "The row of '" << *word << "' lies too far behind in its file to be extended");
    }
    extendBag_.insert(position.Lo());
    offset = static_cast<int>(position.Lo());
  } else if (!extender_->lookupOffset(word, &offset)) {
    extender_->addWord(word);
    extender_->lookupOffset(word, &offset);
  }
  extender_->addData(offset, chunk, 1);
}

void IkExtender::deleteDocument(int doc_num) {
  initObjects();
  if (deleter_ == nullptr) {
    deleter_ = IkDeleterVector::Bind(name_.suffix(nullptr), info_.totalNumChunks, 0);
    matrixData_->deleter(deleter_);
  }
  deleter_->deleteDocument(doc_num);
}

bool IkExtender::isNewlyExtended() const {
  return !matrixData_->extendedData() && matrixData_->tell().Hi() == 0 &&
         extendBag_.count(matrixData_->tell().Lo()) != 0;
}

void IkExtender::unpackRow(IkDataFileUnpacker* functor, float idf) {
  matrixData_->rawUnpackRow(functor, idf);
  if (!isNewlyExtended()) return;
  extender_->seek(static_cast<int>(matrixData_->offset()));
  extender_->unpackRow(functor, idf);
}

float IkExtender::liveIdf(int numDocs) const { return numDocs == 0 ? 0.0f : sim_.IDF(numDocs); }

void IkExtender::weighMainRows(std::vector<float>* scales, IkCalculateSums* sums) {
  int rows = 0;
  for (matrixData_->seek(StStoragePos()); matrixData_->more(); matrixData_->next()) {
    if (rows == kMaxRows) THROW(Ik, "Scale table overflow (compile-time limit)");
    IkCalculateIdf counter;
    unpackRow(&counter, 0.0f);
    const float idf = liveIdf(counter.numDocs());
    (*scales)[static_cast<std::size_t>(rows++)] = idf;
    if (idf > 0) unpackRow(sums, idf);
    if (extender_ != nullptr && (matrixData_->extendedData() || isNewlyExtended())) {
      extender_->seek(static_cast<int>(matrixData_->offset()));
      extender_->scale(idf);
    }
  }
}

// Rows of words that the main index hasn't got keep their scale themselves.
void IkExtender::weighNewWords(IkCalculateSums* sums) {
  for (extender_->seek(static_cast<int>(IkDataExtender::kNewWord)); extender_->more();
       extender_->next()) {
    IkCalculateIdf counter;
    extender_->unpackRow(&counter, 0.0f);
    const float idf = liveIdf(counter.numDocs());
    extender_->scale(idf);
    if (idf > 0) extender_->unpackRow(sums, idf);
  }
}

void IkExtender::makeIndex() {
  initObjects();
  std::vector<float> sums(static_cast<std::size_t>(info_.totalNumChunks));
  std::vector<float> scales(kMaxRows);
  std::cout << "IkExtender: making index (totalNumChunks=" << info_.totalNumChunks << '\n';
  if (extender_ != nullptr) extender_->done();
  if (deleter_ != nullptr) {
    deleter_->done();
    info_.numDeletedChunks = deleter_->numDeleted();
  }
  sim_.bind(&info_);
  IkCalculateSums adder(info_.totalNumChunks, sums.data());
  weighMainRows(&scales, &adder);
  if (extender_ != nullptr) weighNewWords(&adder);
  for (float& sum : sums) {
    if (sum > 0) sum = std::sqrt(std::max(sum, info_.minDocumentLength));
  }

  const std::unique_ptr<Timer> timer(Timer::Create());
  timer->start();
  freeze();
  if (extender_ != nullptr) extender_->freeze();
  if (deleter_ != nullptr) deleter_->freeze();
  writeFloats(name_.suffix(".sum"), sums);
  info_.write(name_.suffix(".info"));
  updateMatrixData(scales.data());
  unfreeze();
  timer->stop();
  std::cout << "  index was frozen for: " << timer.get() << '\n';
}

void IkExtender::freeze() { std::cout << "Freezing..." << std::endl; }

void IkExtender::unfreeze() { std::cout << "Unfreezing..." << std::endl; }

void IkExtender::updateMatrixData(const float* scales) {
  for (matrixData_->seek(StStoragePos()); matrixData_->more(); matrixData_->next()) {
    matrixData_->scale(*scales++);
    if (isNewlyExtended()) matrixData_->setExtendedData();
    matrixData_->storeHeader();
  }
  matrixData_->updateInfo();
}

}  // namespace vandrelle
