#include "Storage/StStorage.h"

#include <cstdio>
#include <ostream>

#include "Storage/StException.h"
#include "Storage/StStorageHandle.h"
#include "Tool/SysTools.h"

namespace vandrelle {

std::ostream& operator<<(std::ostream& os, StFileText text) {
  return os << " (file \"" << text.path << "\")";
}

std::ostream& operator<<(std::ostream& os, StFileSystemText text) {
  return os << " (file \"" << text.path << "\": " << SysTools::strerror() << ')';
}

std::ostream& operator<<(std::ostream& os, const StStoragePos& pos) {
  char text[17];
  if (pos.Hi() != 0) {
    std::snprintf(text, sizeof text, "%x%08x", pos.Hi(), pos.Lo());
  } else {
    std::snprintf(text, sizeof text, "%x", pos.Lo());
  }
  return os << text;
}

StStorageHandle StStorage::Get(const StStoragePos& pos, StStorageLen len, int mode, int advice) {
  return StStorageHandle(new StStorageBuffer(pos, len, this, mode, advice));
}

StStorageHandle StStorage::GetAtEnd(StStorageLen len) {
  return StStorageHandle(new StStorageBuffer(len, this));
}

void StStorage::SetBufferData(StStorageBuffer* buffer, byte* data) { buffer->data = data; }
void* StStorage::BufferInfo(const StStorageBuffer* buffer) { return buffer->info; }
void StStorage::SetBufferInfo(StStorageBuffer* buffer, void* info) { buffer->info = info; }

StStorageBuffer::StStorageBuffer(const StStoragePos& pos, StStorageLen l, StStorage* s, int mode,
                                 int advice_)
    : start(pos),
      length(l),
      storage(s),
      accessMode(s->IsWritable() ? mode : kStRead),
      advice(advice_) {
  s->NewData(this);
}

StStorageBuffer::StStorageBuffer(StStorageLen l, StStorage* s)
    : length(l), storage(s), accessMode(kStWrite), advice(kStDefaultAdvice) {
  if (!s->IsWritable()) THROW(St, "Can't extend read-only storage!");
  start = s->MaxPos();
  s->NewData(this);
}

StStorageHandle& StStorageHandle::operator=(StStorageBuffer* buffer) {
  if (buffer != nullptr) ++buffer->refCount;
  release();
  buffer_ = buffer;
  return *this;
}

void StStorageHandle::release() {
  if (buffer_ == nullptr) return;
  StStorageBuffer* buffer = buffer_;
  buffer_ = nullptr;
  if (--buffer->refCount > 0) return;
  if (buffer->writerCount <= 0) buffer->accessMode = kStRead;
  buffer->storage->DeleteData(buffer);
  delete buffer;
}

StStorageBuffer* StStorageHandle::relinquish() {
  StStorageBuffer* buffer = buffer_;
  if (buffer != nullptr) --buffer->refCount;
  buffer_ = nullptr;
  return buffer;
}

}  // namespace vandrelle
