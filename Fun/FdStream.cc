#include "Fun/FdStream.h"

#include <algorithm>
#include <cstring>

namespace vandrelle {

namespace {

void copyOut(void* place, int* size, const void* from, int bytes) {
  const int room = size != nullptr ? std::min(*size, bytes) : bytes;
  if (place != nullptr && from != nullptr && room > 0) {
    std::memcpy(place, from, static_cast<std::size_t>(room));
  }
  if (size != nullptr) *size = bytes;
}

}  // namespace

FdStream::~FdStream() = default;

void FdStream::key(void* place, int* size) { copyOut(place, size, key(), keySize()); }

void* FdStream::data() { return nullptr; }

int FdStream::dataSize() { return 0; }

void FdStream::data(void* place, int* size) { copyOut(place, size, data(), dataSize()); }

int FdStream::keyType() { return 0; }

int FdStream::dataType() { return 0; }

}  // namespace vandrelle
