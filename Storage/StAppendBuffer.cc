#include "Storage/StAppendBuffer.h"

#include <algorithm>
#include <cstring>

#include "Storage/StStorageHandle.h"

namespace vandrelle {

StAppendBuffer::StAppendBuffer(StStorage* storage, int bufsize)
    : storage_(storage),
      buffer_(new byte[static_cast<std::size_t>(std::max(bufsize, 1))]),
      max_(std::max(bufsize, 1)) {}

StAppendBuffer::~StAppendBuffer() {
  flush();
  delete[] buffer_;
}

void StAppendBuffer::put(const void* bytes, std::size_t length) {
  const byte* from = static_cast<const byte*>(bytes);
  while (length > 0) {
    if (pos_ == max_) flush();
    const std::size_t piece = std::min(length, static_cast<std::size_t>(max_ - pos_));
    std::memcpy(buffer_ + pos_, from, piece);
    pos_ += static_cast<int>(piece);
    from += piece;
    length -= piece;
  }
}

void StAppendBuffer::flush() {
  if (pos_ == 0) return;
  const int waiting = pos_;
  pos_ = 0;
  StStorageHandle run = storage_->GetAtEnd(static_cast<StStorageLen>(waiting));
  std::memcpy(run.data(), buffer_, static_cast<std::size_t>(waiting));
  run.markDirty();
  run.release();
}

StStoragePos StAppendBuffer::tellp() const {
  return storage_->MaxPos() + static_cast<uint32>(pos_);
}

}  // namespace vandrelle
