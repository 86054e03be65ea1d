#include "Storage/StPosMapCreator.h"

#include <algorithm>
#include <cstring>

#include "Storage/StException.h"
#include "Storage/StStorageHandle.h"
#include "Tool/SevenBit.h"

namespace vandrelle {

namespace {

constexpr int kBufferBytes = 4096;

StFileStorage& initialized(StFileStorage& storage) {
  storage.Initialize();
  return storage;
}

}  // namespace

void StPosMapPointer::load(const unsigned char* from) {
  pos_ = loadStoragePos(from);
  offset_ = loadU32(from + 8);
}

void StPosMapPointer::store(unsigned char* to) const {
  storeStoragePos(to, pos_);
  storeU32(to + 8, offset_);
}

StPosMapCreator::StPosMapCreator(const char* file, uint32 interval)
    : storage_(file, true),
      buffer_(&initialized(storage_), kBufferBytes),
      interval_(std::max<uint32>(interval, 1)) {
  for (uint32 word : {kPosMapSignature, interval_, uint32{0}, uint32{0}}) putWord(word);
}

void StPosMapCreator::putWord(uint32 word) {
  unsigned char bytes[4];
  storeU32(bytes, word);
  buffer_.put(bytes, sizeof bytes);
}

void StPosMapCreator::add(const StStoragePos& pos) {
  if (key_ % interval_ == 0) {
    const StPosMapPointer pointer{pos_, (buffer_.tellp() - kPosMapHeaderBytes).Lo()};
    pointers_.resize(pointers_.size() + kPosMapPointerBytes);
    pointer.store(&pointers_.end()[-static_cast<int>(kPosMapPointerBytes)]);
  }
  ++key_;
  if (pos < pos_ || (pos - pos_).Hi() != 0) {
    THROW(St, "Position map can't hold the position of key " << (key_ - 1));
  }
  putSevenBit((pos - pos_).Lo(), [this](unsigned char group) { buffer_.put(group); });
  pos_ = pos;
}

StPosMapCreator::~StPosMapCreator() {
  while (buffer_.tellp().Lo() % 4 != 0) buffer_.put('\0');
  buffer_.flush();
  const StStoragePos pointersPos = storage_.MaxPos();
  if (!pointers_.empty()) {
    StStorageHandle table = storage_.GetAtEnd(static_cast<StStorageLen>(pointers_.size()));
    std::memcpy(table.data(), pointers_.data(), pointers_.size());
    table.markDirty();
  }
  StStorageHandle header = storage_.Get(0, kPosMapHeaderBytes, kStWrite, kStDefaultAdvice);
  storeU32(header.data(), kPosMapSignature);
  storeU32(header.data() + 4, interval_);
  storeU32(header.data() + 8, static_cast<uint32>(pointers_.size() / kPosMapPointerBytes));
  storeU32(header.data() + 12, pointersPos.Lo());
  header.markDirty();
}

}  // namespace vandrelle
