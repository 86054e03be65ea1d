#include "Storage/StPosMapBinder.h"

#include <algorithm>

#include "Storage/StException.h"
#include "Storage/StPosMapCreator.h"
#include "Tool/SevenBit.h"

namespace vandrelle {

StPosMapBinder::StPosMapBinder(const char* file) {
  map_.bind(file);
  const auto* bytes = static_cast<const unsigned char*>(map_.addr());
  const auto length = static_cast<std::uint64_t>(map_.len());
  interval_ = length >= kPosMapHeaderBytes ? loadU32(bytes + 4) : 0;
  maxPointer_ = length >= kPosMapHeaderBytes ? loadU32(bytes + 8) : 0;
  const std::uint64_t offset = length >= kPosMapHeaderBytes ? loadU32(bytes + 12) : 0;
  if (interval_ == 0 || (maxPointer_ > 0 && offset < kPosMapHeaderBytes) ||
      offset + std::uint64_t{maxPointer_} * kPosMapPointerBytes > length) {
    map_.release();
    THROW(St, "Position map is damaged" << StFileText{file});
  }
  pointers_ = bytes + offset;
  values_ = bytes + kPosMapHeaderBytes;
}

// The key behind the last group has no pointer of its own when that group is full:
// it is reached from the last pointer.
StStoragePos StPosMapBinder::lookup(uint32 key) const {
  if (maxPointer_ == 0) {
    if (key == 0) return StStoragePos();
    THROW(St, "Position map has no key " << key);
  }
  const uint32 group = std::min(key / interval_, maxPointer_ - 1);
  StPosMapPointer pointer;
  pointer.load(pointers_ + std::size_t{group} * kPosMapPointerBytes);
  if (pointer.offset_ > static_cast<std::uint64_t>(pointers_ - values_)) {
    THROW(St, "Position map is damaged at key " << key);
  }
  StStoragePos pos = pointer.pos_;
  const unsigned char* from = values_ + pointer.offset_;
  // What isn't whole reads as a number without end.
  const auto nextByte = [&]() -> uint32 { return from == pointers_ ? 0x80 : *from++; };
  for (uint32 left = key - group * interval_; left > 0; --left) {
    uint32 delta;
    if (!getSevenBit(nextByte, &delta)) THROW(St, "Position map has no key " << key);
    pos += delta;
  }
  return pos;
}

}  // namespace vandrelle
