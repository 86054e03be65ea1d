#include "Index/IkDataFileBinder.h"

#include <algorithm>

#include "Index/IkDeleterVector.h"
#include "Index/IkException.h"
#include "Storage/StFileStorage.h"
#include "Storage/StMapStorage.h"
#include "Tool/NameManager.h"

namespace vandrelle {

namespace {

// Bytes read at a time; a longer row is read as a whole.
constexpr std::uint64_t kReadSize = 8192;

}  // namespace

IkDataFileBinder::~IkDataFileBinder() = default;

void IkDataFileBinder::bind(const char* rootname, int mode, int mmap) {
  const NameManager name(rootname);
  bindFile(name.suffix(".dat"), mode, mmap);
  initExtenderDeleter(rootname);
}

void IkDataFileBinder::bindFile(const char* filename, int mode, int mmap) {
  rowdataBuffer_.release();
  rowdata_ = nullptr;
  mode_ = mode;
  if (mmap) {
    storage_ = std::make_unique<StMapStorage>(filename);
  } else {
    storage_ = std::make_unique<StFileStorage>(filename, true);
  }
  storage_->Open(!mmap && mode != 0, false);
  filesize_ = storage_->MaxPos();
  offset_ = lastOffset_ = StStoragePos();
  seek(StStoragePos());
}

void IkDataFileBinder::initExtenderDeleter(const char* rootname) {
  extender(IkDataExtender::Bind(rootname, mode_));
  deleter(IkDeleterVector::Bind(rootname, 0, 1));
}

void IkDataFileBinder::seek(const StStoragePos& position) {
  if (!(position < filesize_)) return;
  offset_ = position;
  loadHeader();
}

uint32 IkDataFileBinder::offset() const {
  if (offset_.Hi() != 0) THROW(Ik, "Offset too big.  Use Storage API.");
  return offset_.Lo();
}

void IkDataFileBinder::next() {
  if (!more()) return;
  offset_ += linesize();
  if (more()) loadHeader();
}

void IkDataFileBinder::loadHeader() {
  rowdata_ = nullptr;
  load(IkDataFileFormat::kHeaderSize);
  row_.load(rowdataBuffer_.data() + (offset_.Bytes() - rowdataBuffer_.start().Bytes()));
}

void IkDataFileBinder::loadRow() {
  if (rowdata_ != nullptr || !more()) return;
  load(IkDataFileFormat::kHeaderSize + std::uint64_t{dataSize()});
  rowdata_ = rowdataBuffer_.data() + (offset_.Bytes() - rowdataBuffer_.start().Bytes()) +
             IkDataFileFormat::kHeaderSize;
}

// Are `length` bytes from the current row on in the buffer?
bool IkDataFileBinder::holds(std::uint64_t length) const {
  if (!rowdataBuffer_.valid()) return false;
  const std::uint64_t start = rowdataBuffer_.start().Bytes();
  const std::uint64_t begin = offset_.Bytes();
  return begin >= start && begin + length <= start + rowdataBuffer_.length();
}

void IkDataFileBinder::load(std::uint64_t length) {
  if (holds(length)) return;
  const std::uint64_t left = filesize_.Bytes() - offset_.Bytes();
  if (length > left) {
    THROW(Ik, "The row at " << offset_ << " is longer than its row data file");
  }
  const std::uint64_t wanted = std::min(std::max(length, kReadSize), left);
  rowdata_ = nullptr;
  rowdataBuffer_.release();
  rowdataBuffer_ =
      storage_->Get(offset_, static_cast<StStorageLen>(wanted), kStRead, kStDefaultAdvice);
  lastOffset_ = offset_ + StStoragePos::FromBytes(wanted);
}

IkDataRowBuffer* IkDataFileBinder::rowBuffer() {
  loadRow();
  auto* buffer = new IkDataRowBuffer(rowdata_, rowdataBuffer_);
  rowdata_ = nullptr;
  rowdataBuffer_.release();
  return buffer;
}

void IkDataFileBinder::scale(float value) {
  if (mode_ == 0) THROW(Ik, "Cannot set scale while in read-only mode.");
  if (more()) row_.scale = value;
}

void IkDataFileBinder::storeHeader() {
  if (mode_ == 0) THROW(Ik, "Cannot change a row while in read-only mode.");
  if (!more()) return;
  // What is held of the file is out of date then.
  rowdata_ = nullptr;
  rowdataBuffer_.release();
  StStorageHandle header =
      storage_->Get(offset_, IkDataFileFormat::kHeaderSize, kStWrite, kStDefaultAdvice);
  row_.store(header.data());
  header.markDirty();
}

void IkDataFileBinder::unpackRow(IkDataFileUnpacker* functor) {
  if (more()) rawUnpackRow(functor, row_.scale);
}

void IkDataFileBinder::rawUnpackRow(IkDataFileUnpacker* functor, float scale) {
  if (!more()) THROW(Ik, "Invalid rawUnpackRow()");
  loadRow();
  IkDataFile::unpackBuffer(rowdata_, static_cast<int>(dataSize()), scale, functor, deleter_.get(),
                           structureMap_);
  if (extendedData() && extender_ != nullptr) {
    extender_->seek(static_cast<int>(offset()));
    extender_->unpackRow(functor, scale);
  }
}

void IkDataFileBinder::deleter(IkDeleter* deleter) {
  deleter_.reset(deleter);
  if (extender_ != nullptr) extender_->deleter(deleter);
}

void IkDataFileBinder::extender(IkDataExtender* extender) {
  extender_.reset(extender);
  if (extender_ != nullptr) extender_->deleter(deleter_.get());
}

void IkDataFileBinder::updateInfo() { THROW(Ik, "Call to dead code!"); }

}  // namespace vandrelle
