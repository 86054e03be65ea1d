#include "Index/IkDeleterVector.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <memory>

#include "Index/IkException.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

namespace {

constexpr int kHeaderSize = 8;
constexpr const char* kVector = ".xk";
constexpr const char* kShadow = ".xk.tmp";

std::int64_t sizeFor(std::int64_t documents) { return kHeaderSize + (documents + 7) / 8; }

// Creates the file if it isn't there, and gives it a size; what is new is zero.
bool resizeFile(const char* filename, std::int64_t bytes) {
  std::FILE* file = std::fopen(filename, "ab");
  if (file == nullptr) return false;
  const bool resized = ::ftruncate(::fileno(file), bytes) == 0;
  return std::fclose(file) == 0 && resized;
}

}  // namespace

IkDeleterVector* IkDeleterVector::Create(const char* rootname, int totalNumDocs, int readOnly) {
  std::unique_ptr<IkDeleterVector> vector(new IkDeleterVector(rootname));
  SysTools::removeFile(vector->name_.suffix(kShadow));
  vector->resizeShadow(totalNumDocs);
  vector->readOnly_ = readOnly;
  return vector.release();
}

IkDeleterVector* IkDeleterVector::Bind(const char* rootname, int totalNumDocs, int readOnly) {
  std::unique_ptr<IkDeleterVector> old;
  if (SysTools::fileExists(NameManager(rootname).suffix(kVector))) {
    old.reset(new IkDeleterVector(rootname));
    old->map(kVector, SysTools::kMapReadOnly);
  }
  if (readOnly) return old.release();
  std::unique_ptr<IkDeleterVector> vector(Create(rootname, totalNumDocs, 0));
  if (old != nullptr) {
    vector->grow(old->totalNumDocs_);
    vector->numDeleted_ = old->numDeleted_;
    for (int i = kHeaderSize; i < sizeFor(old->totalNumDocs_); ++i) {
      vector->vector_[i] = old->vector_[i];
    }
    vector->done();
  }
  return vector.release();
}

IkDeleterVector::~IkDeleterVector() {
  if (!readOnly_) SysTools::removeFile(name_.suffix(kShadow));
}

void IkDeleterVector::map(const char* suffix, int mode) {
  const char* filename = name_.suffix(suffix);
  map_.bind(filename, mode, 0);
  fileSize_ = map_.len();
  vector_ = static_cast<unsigned char*>(map_.addr());
  if (fileSize_ >= kHeaderSize) {
    totalNumDocs_ = loadS32(vector_);
    numDeleted_ = loadS32(vector_ + 4);
  }
  // The number of documents may itself have been deleted, so that the count can
  // pass it by one.
  if (fileSize_ < kHeaderSize || totalNumDocs_ < 0 || fileSize_ < sizeFor(totalNumDocs_) ||
      numDeleted_ < 0 || numDeleted_ - 1 > totalNumDocs_) {
    map_.release();
    THROW(Ik, "The list of deleted documents '" << filename << "' is damaged");
  }
}

void IkDeleterVector::resizeShadow(int totalNumDocs) {
  if (totalNumDocs < 0) THROW(Ik, "There are no lists of " << totalNumDocs << " documents");
  const int numDeleted = numDeleted_;
  map_.release();
  vector_ = nullptr;
  if (!resizeFile(name_.suffix(kShadow), sizeFor(totalNumDocs))) {
    THROW(IkIO, "Couldn't write '" << name_.suffix(kShadow) << "': " << SysTools::strerror());
  }
  map(kShadow, SysTools::kMapShared);
  storeS32(vector_, totalNumDocs);
  totalNumDocs_ = totalNumDocs;
  numDeleted_ = numDeleted;
  readOnly_ = 0;
  done();
}

void IkDeleterVector::grow(int totalNumDocs) {
  if (totalNumDocs > totalNumDocs_) resizeShadow(totalNumDocs);
}

// The number totalNumDocs_ itself passes the first test, and its bit is read if
// the last byte has it.
int IkDeleterVector::isDeleted(int doc_num) {
  if (doc_num < 0 || doc_num > totalNumDocs_) return 0;
  const int place = kHeaderSize + doc_num / 8;
  return place < fileSize_ ? vector_[place] >> (7 - doc_num % 8) & 1 : 0;
}

// As in isDeleted(), the number totalNumDocs_ itself passes; where the last byte
// hasn't got its bit there is nothing to set or to count.
void IkDeleterVector::deleteDocument(int doc_num) {
  if (readOnly_) THROW(Ik, "Cannot delete document from read-only deleter.");
  if (doc_num < 0 || doc_num > totalNumDocs_) {
    THROW(Ik, "Attempt to delete document (" << doc_num << ") which isn't in index.");
  }
  const int place = kHeaderSize + doc_num / 8;
  if (place >= fileSize_ || isDeleted(doc_num)) return;
  vector_[place] = static_cast<unsigned char>(vector_[place] | 1 << (7 - doc_num % 8));
  ++numDeleted_;
}

void IkDeleterVector::done() {
  if (!readOnly_) storeS32(vector_ + 4, numDeleted_);
}

void IkDeleterVector::freeze() {
  if (readOnly_) return;
  const std::string shadow = name_.suffix(kShadow);
  if (std::rename(shadow.c_str(), name_.suffix(kVector)) != 0) {
    THROW(Ik, "Failed to unmap temp deleter file.");
  }
  readOnly_ = 1;
  map_.release();
  map(kVector, SysTools::kMapReadOnly);
}

}  // namespace vandrelle
