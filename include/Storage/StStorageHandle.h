// A counted reference to a storage buffer. The buffer goes with the last handle
// on it; unless some holder has marked it dirty, nothing is written back then.
#pragma once

#include "Storage/StStorage.h"

namespace vandrelle {

class StStorageHandle {
 public:
  StStorageHandle() = default;
  // Takes a share in `buffer`, which may be null and was made with `new`.
  explicit StStorageHandle(StStorageBuffer* buffer) { attach(buffer); }
  StStorageHandle(const StStorageHandle& other) { attach(other.buffer_); }
  StStorageHandle& operator=(const StStorageHandle& other) { return *this = other.buffer_; }
  StStorageHandle& operator=(StStorageBuffer* buffer);
  ~StStorageHandle() { release(); }

  // Gives the share up and is empty then. The last release writes a dirty buffer
  // and destroys it; throws what the storage throws.
  void release();
  // Gives the share up without ever ending the buffer, which the caller takes over.
  StStorageBuffer* relinquish();

  // Of the buffer; the handle must be valid.
  byte* data() const { return buffer_->data; }
  const StStoragePos& start() const { return buffer_->start; }
  StStorageLen length() const { return buffer_->length; }
  bool dirty() const { return buffer_->writerCount > 0; }
  // Marks count: each markDirty() takes back one markClean().
  void markClean() { --buffer_->writerCount; }
  void markDirty() { ++buffer_->writerCount; }

  bool valid() const { return buffer_ != nullptr; }

 private:
  void attach(StStorageBuffer* buffer) {
    buffer_ = buffer;
    if (buffer_ != nullptr) ++buffer_->refCount;
  }

  StStorageBuffer* buffer_ = nullptr;
};

// Short names: a handle on a place in a storage, and on bytes that are kept.
using StHandle = StStorageHandle;
using StBuffer = StStorageHandle;

}  // namespace vandrelle
