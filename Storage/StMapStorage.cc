#include "Storage/StMapStorage.h"

#include <sys/stat.h>

#include "Storage/StException.h"

namespace vandrelle {

void StMapStorage::Initialize() { THROW(St, "Can't initialize StMapStorage" << StFileText{root_}); }

void StMapStorage::Open(bool writable, bool create) {
  if (writable) THROW(St, "Can't open writable StMapStorage" << StFileText{root_});
  if (create) THROW(St, "Can't create StMapStorage" << StFileText{root_});
  isOpen = false;
  struct stat status;
  if (stat(root_, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0) {
    map_.release();  // nothing to map
  } else {
    map_.bind(root_);
  }
  isOpen = true;
}

void StMapStorage::SetMaxPos(const StStoragePos&) {
  THROW(St, "Can't SetMaxPos on StMapStorage" << StFileText{root_});
}

void StMapStorage::NewData(StStorageBuffer* buffer) {
  const auto length = static_cast<std::uint64_t>(map_.len());
  const std::uint64_t start = buffer->Start().Bytes();
  if (start > length || buffer->Length() > length - start) {
    THROW(St, "Buffer past end-of-file" << StFileText{root_});
  }
  SetBufferData(buffer, static_cast<byte*>(map_.addr()) + start);
}

}  // namespace vandrelle
