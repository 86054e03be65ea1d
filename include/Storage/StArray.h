// A stored run of values of one type, read one at a time by index. Numbers are
// big-endian in the storage; any other trivially copyable type is taken as its
// bytes stand.
#pragma once

#include <cstring>
#include <type_traits>

#include "Storage/StStorageHandle.h"

namespace vandrelle {

template <typename T>
class StArray {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  // The values begin `startOffset` bytes from the storage's start. The storage
  // must outlive the array.
  StArray(StStorage* storage, int startOffset) : startOffset_(startOffset), storage_(storage) {}

  // Throws what the storage throws when the value lies beyond its end.
  T operator[](uint32 index) const {
    StStoragePos pos;
    pos.SetToProduct(index, sizeof(T));
    pos += static_cast<uint32>(startOffset_);
    const StStorageHandle handle = storage_->Get(pos, sizeof(T), kStRead, kStDefaultAdvice);
    T value;
    std::memcpy(&value, handle.data(), sizeof value);
    if constexpr (std::is_arithmetic_v<T> && sizeof(T) > 1) {
      if (std::endian::native == std::endian::little) {
        unsigned char bytes[sizeof(T)];
        for (std::size_t i = 0; i < sizeof(T); ++i) bytes[i] = handle.data()[sizeof(T) - 1 - i];
        std::memcpy(&value, bytes, sizeof value);
      }
    }
    return value;
  }

 private:
  int startOffset_;
  StStorage* storage_;
};

}  // namespace vandrelle
