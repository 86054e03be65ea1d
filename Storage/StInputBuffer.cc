#include "Storage/StInputBuffer.h"

#include <algorithm>

#include "Storage/StException.h"

namespace vandrelle {

StInputBuffer::StInputBuffer(StStorage* storage, int bufsize, bool delStorage)
    : bufsize_(std::max(bufsize, 1)), storage_(storage), deleteStorage_(delStorage) {}

StInputBuffer::~StInputBuffer() {
  buffer_.release();
  if (deleteStorage_) delete storage_;
}

void StInputBuffer::seekg(const StStoragePos& pos) {
  if (pos >= base_ && pos - base_ <= static_cast<uint32>(buflen_)) {
    offset_ = static_cast<int>((pos - base_).Lo());
    return;
  }
  buffer_.release();
  base_ = pos;
  offset_ = 0;
  buflen_ = 0;
}

void StInputBuffer::refill() {
  base_ += static_cast<uint32>(buflen_);
  offset_ = 0;
  buflen_ = 0;
  buffer_.release();
  const StStoragePos max = storage_->MaxPos();
  if (base_ >= max) THROW(St, "Attempt to read past end of file!");
  const std::uint64_t left = (max - base_).Bytes();
  const auto length =
      static_cast<StStorageLen>(std::min<std::uint64_t>(left, static_cast<StStorageLen>(bufsize_)));
  buffer_ = storage_->Get(base_, length, kStRead, kStDefaultAdvice);
  data_ = buffer_.data();
  buflen_ = static_cast<int>(length);
}

}  // namespace vandrelle
