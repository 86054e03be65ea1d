#include "Index/IkDeleterVector.h"

#include "Index/IkException.h"
#include "Tool/ByteOrder.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr int kHeaderSize = 8;

}  // namespace

IkDeleterVector* IkDeleterVector::Bind(const char* rootname) {
  NameManager name(rootname, 20);
  const char* filename = name.suffix(".xk");
  if (!SysTools::fileExists(filename)) return nullptr;
  auto* vector = new IkDeleterVector;
  vector->open(filename);
  return vector;
}

void IkDeleterVector::open(const char* filename) {
  map_.bind(filename, 0, 0);
  fileSize_ = map_.len();
  vector_ = static_cast<const unsigned char*>(map_.addr());
  if (fileSize_ >= kHeaderSize) {
    totalNumDocs_ = loadS32(vector_);
    numDeleted_ = loadS32(vector_ + 4);
  }
  if (fileSize_ < kHeaderSize || totalNumDocs_ < 0 ||
      fileSize_ < kHeaderSize + (static_cast<long long>(totalNumDocs_) + 7) / 8) {
    THROW(Ik, "The list of deleted documents '" << filename << "' is damaged");
  }
}

// The number totalNumDocs_ itself passes the first test, and its bit is read if
// the last byte has it.
int IkDeleterVector::isDeleted(int doc_num) {
  if (doc_num < 0 || doc_num > totalNumDocs_) return 0;
  const int place = kHeaderSize + doc_num / 8;
  return place < fileSize_ ? vector_[place] >> (7 - doc_num % 8) & 1 : 0;
}

void IkDeleterVector::deleteDocument(int) {
  THROW(Ik, "Cannot delete document from read-only deleter.");
}

}  // namespace vandrelle
