#include "Index/IkDataFileCreator.h"

#include <algorithm>
#include <limits>
#include <new>

#include "Index/IkDataFile.h"
#include "Index/IkException.h"
#include "Storage/StAppendBuffer.h"
#include "Storage/StFileStorage.h"

namespace vandrelle {

namespace {

constexpr int kOutputBufferSize = 8192;
constexpr int kMinRowBuffer = 1024;
constexpr int kDoublingLimit = 524288;
constexpr int kGrowth = 524288;

}  // namespace

IkDataFileCreator::IkDataFileCreator() = default;

IkDataFileCreator::~IkDataFileCreator() = default;

void IkDataFileCreator::create(const char* outfile, int bufsize) {
  output_.reset();
  storage_ = std::make_unique<StFileStorage>(outfile, true);
  storage_->Initialize();
  output_ = std::make_unique<StAppendBuffer>(storage_.get(), kOutputBufferSize);
  bufsize_ = std::max(bufsize, kMinRowBuffer);
  allocateRow();
}

void IkDataFileCreator::writeRow(const int* row, int rowSize, float scale) {
  writeRowImpl(row, nullptr, rowSize, scale);
}

void IkDataFileCreator::writeRow(const IkDocumentInfo* docInfo, int rowSize, float scale) {
  writeRowImpl(nullptr, docInfo, rowSize, scale);
}

void IkDataFileCreator::writeRowImpl(const int* row, const IkDocumentInfo* docInfo, int rowSize,
                                     float scale) {
  int size = -1;
  for (;;) {
    size = IkDataFile::packBufferImpl(row, docInfo, rowSize,
                                      row_.get() + IkDataFileFormat::kHeaderSize,
                                      bufsize_ - IkDataFileFormat::kHeaderSize);
    if (size > 0) break;
    if (size == 0) THROW(Ik, "A row without documents can't be written");
    growRow();
  }
  IkDataFileFormat header;
  header.flags = static_cast<uint32>(size);
  header.scale = scale;
  header.store(row_.get());
  // The buffer may have held a longer row: the padding is zero all the same.
  std::fill_n(row_.get() + IkDataFileFormat::kHeaderSize + size, 3, static_cast<unsigned char>(0));
  output_->put(row_.get(), header.linesize());
}

// Three bytes more than asked for, so that the padding always fits.
void IkDataFileCreator::allocateRow() {
  row_.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(bufsize_) + 3]());
  if (row_ == nullptr) THROW(Ik, "Failed to allocate memory (" << bufsize_ << ")");
}

void IkDataFileCreator::growRow() {
  row_.reset();
  const int growth = bufsize_ <= kDoublingLimit ? bufsize_ : kGrowth;
  if (bufsize_ > std::numeric_limits<int>::max() - growth) {
    THROW(Ik, "Failed to allocate memory (" << static_cast<long long>(bufsize_) + growth << ")");
  }
  bufsize_ += growth;
  allocateRow();
}

StStoragePos IkDataFileCreator::offset() const { return output_->tellp(); }

void IkDataFileCreator::flush() { output_->flush(); }

}  // namespace vandrelle
