#include "Index/IkTransposeLoader.h"

#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <vector>

#include "Document/DcDocument.h"
#include "Document/DcDocumentManager.h"
#include "Fun/FdStream.h"
#include "Index/IkDataFileBinder.h"
#include "Index/IkDataFileTransposeUnpacker.h"
#include "Index/IkException.h"
#include "Index/IkTranspose.h"
#include "Index/IkWordTable.h"
#include "Storage/StFileStorage.h"
#include "Storage/StStorageHandle.h"
#include "Tool/SysTools.h"
#include "Word.h"

namespace vandrelle {

namespace {

constexpr std::size_t kZeroBytes = std::size_t{1} << 20;

StStoragePos linePosition(int doc, int lineBytes) {
  StStoragePos position;
  position.SetToProduct(static_cast<uint32>(doc), static_cast<uint32>(lineBytes));
  return position;
}

}  // namespace

IkTransposeLoader::~IkTransposeLoader() = default;

IkTransposeLoaderFile::IkTransposeLoaderFile(const char* filename, int digestSize, int writable,
                                             int entrySize)
    : digestSize_(digestSize),
      entrySize_(entrySize == 0 ? IkTranspose::kEntryBytes : entrySize),
      writable_(writable) {
  storage_ = std::make_unique<StFileStorage>(filename, true);
  storage_->Open(writable != 0, writable != 0);
}

IkTransposeLoaderFile::~IkTransposeLoaderFile() = default;

int IkTransposeLoaderFile::load(int doc, unsigned char* place) {
  const uint32 length = static_cast<uint32>(lineBytes());
  const StStoragePos position = linePosition(doc, lineBytes());
  if (doc < 0 || position + length > storage_->MaxPos()) {
    THROW(IkTranspose, "There is no digest of document " << doc);
  }
  StStorageHandle handle = storage_->Get(position, length, kStRead, kStDefaultAdvice);
  std::memcpy(place, handle.data(), length);
  return 1;
}

int IkTransposeLoaderFile::flush(const unsigned char* data, int doc) {
  const uint32 length = static_cast<uint32>(lineBytes());
  StStorageHandle handle =
      storage_->Get(linePosition(doc, lineBytes()), length, kStWrite, kStDefaultAdvice);
  std::memcpy(handle.data(), data, length);
  handle.markDirty();
  return 1;
}

void IkTransposeLoaderFile::zeroFill(int numDocs) {
  storage_->SetMaxPos(StStoragePos());
  const StStoragePos end = linePosition(numDocs, lineBytes());
  while (storage_->MaxPos() < end) {
    const StStoragePos left = end - storage_->MaxPos();
    const uint32 length =
        left.Hi() != 0 || left.Lo() > kZeroBytes ? static_cast<uint32>(kZeroBytes) : left.Lo();
    StStorageHandle handle = storage_->GetAtEnd(length);
    std::memset(handle.data(), 0, length);
    handle.markDirty();
  }
}

IkOldTransposeLoader::IkOldTransposeLoader(const char* filename, int digestSize)
    : IkTransposeLoaderFile(filename, digestSize, 0, kEntryBytes) {}

int IkOldTransposeLoader::load(int doc, unsigned char* place) {
  IkTransposeLoaderFile::load(doc, place);
  for (int i = digestSize_ - 1; i >= 0; --i) {
    const unsigned char* narrow = place + i * kEntryBytes;
    const int word = narrow[0] << 16 | narrow[1] << 8 | narrow[2];
    const std::uint16_t value = loadU16(narrow + 3);
    unsigned char* wide = place + i * IkTranspose::kEntryBytes;
    IkTranspose::rawNum(wide, word);
    IkTranspose::rawValue(wide, value);
  }
  return 1;
}

IkTransposeLoaderFake::IkTransposeLoaderFake(DcDocumentManager* docmgr, IkWordTable* wordTable,
                                             IkDataFileBinder* matrixData, int digestSize)
    : docmgr_(docmgr), wordTable_(wordTable), matrixData_(matrixData), digestSize_(digestSize) {}

int IkTransposeLoaderFake::load(int doc, unsigned char* place) {
  struct Term {
    int frequency = 0;
    float idf = 0;
    bool special = false;
  };
  // In the order of word numbers, in which the builder adds up and inserts: both
  // the sum and the choice among equal values depend on it.
  std::map<int, Term> terms;
  std::unique_ptr<DcDocument> document(docmgr_->documentNum(doc));
  std::unique_ptr<FdStream> words(document ? document->words() : nullptr);
  if (words) {
    for (words->reset(); words->more(); words->next()) {
      WmWord* word = static_cast<WmWord*>(words->key());
      const int number = wordTable_->wordNum(word);
      if (number < 0) continue;
      Term& term = terms[number];
      if (term.frequency++ > 0) continue;
      StStoragePos position;
      if (!wordTable_->lookup(word, position)) continue;
      matrixData_->seek(position);
      term.idf = matrixData_->scale();
      term.special = word->letter(0) == ' ';
    }
  }
  float sum = 0;
  for (const auto& [number, term] : terms) {
    sum += static_cast<float>(static_cast<long long>(term.frequency) * term.frequency) *
           (term.idf * term.idf);
  }
  if (sum > 0) sum = std::sqrt(sum);
  IkDigestBuilder digest(1, digestSize_);
  IkDataFileTransposeUnpacker unpacker(0, docmgr_->numDocuments() - 1, &digest, &sum);
  for (const auto& [number, term] : terms) {
    if (term.special) continue;
    unpacker.wordnum(number);
    unpacker.action(0, term.frequency, term.idf);
  }
  digest.store(0, place);
  return 1;
}

int IkTransposeLoaderFake::flush(const unsigned char*, int) { return 1; }

}  // namespace vandrelle
