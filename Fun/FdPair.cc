#include "Fun/FdPair.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <new>
#include <ostream>

#include "Fun/FdException.h"

namespace vandrelle {

namespace {

// In the written form, where 0 is the end of a run.
constexpr std::uint32_t kEmptyPair = 0xfff00000;

void copyOut(void* place, int* size, const void* from, int exact, int rounded) {
  const int room = size != nullptr ? std::min(*size, exact) : exact;
  if (place != nullptr && room > 0) std::memcpy(place, from, static_cast<std::size_t>(room));
  if (size != nullptr) *size = rounded;
}

void checkSizes(int keySize, int dataSize) {
  if (keySize < 0 || keySize > FdPair::kMaxBytes) {
    THROW(FdPair, "A key of " << keySize << " bytes does not fit a pair; use at most "
                              << FdPair::kMaxBytes << ".");
  }
  if (dataSize < 0 || dataSize > FdPair::kMaxBytes) {
    THROW(FdPair, "Data of " << dataSize << " bytes do not fit a pair; use at most "
                             << FdPair::kMaxBytes << ".");
  }
}

void fill(char* to, const void* from, int size, int room) {
  if (from == nullptr) size = 0;
  if (size > 0) std::memcpy(to, from, static_cast<std::size_t>(size));
  if (room > size) std::memset(to + size, 0, static_cast<std::size_t>(room - size));
}

}  // namespace

std::size_t FdPair::blockBytes(FdPairInfo info) {
  return sizeof(FdPair) + static_cast<std::size_t>(keyRoom(info) + info.dataWords() * 4);
}

FdPair* FdPair::make(int hash, const void* key, int keySize, const void* data, int dataSize) {
  checkSizes(keySize, dataSize);
  FdPair* pair = make(FdPairInfo(hash, keySize, dataSize));
  setPair(pair, hash, key, keySize, data, dataSize);
  return pair;
}

FdPair* FdPair::make(FdPairInfo info) {
  auto* pair = new (::operator new(blockBytes(info))) FdPair(info);
  pair->exactKeySize_ = static_cast<std::uint16_t>(pair->keySize());
  pair->exactDataSize_ = static_cast<std::uint16_t>(pair->dataSize());
  return pair;
}

FdPair* FdPair::make(const FdPair* pair) {
  FdPair* made = make(pair->info_);
  copy(made, pair);
  return made;
}

void FdPair::destroy(FdPair* pair) { ::operator delete(pair); }

FdPair* FdPair::read(std::istream& is, void* place) {
  unsigned char word[4];
  if (!is.read(reinterpret_cast<char*>(word), 4)) return nullptr;
  FdPairInfo info(static_cast<std::uint32_t>(word[0]) << 24 |
                  static_cast<std::uint32_t>(word[1]) << 16 |
                  static_cast<std::uint32_t>(word[2]) << 8 | word[3]);
  if (info.packed() == 0) return nullptr;
  if (info.packed() == kEmptyPair) info = FdPairInfo();
  FdPair* pair = place != nullptr ? new (place) FdPair(info) : make(info);
  pair->exactKeySize_ = static_cast<std::uint16_t>(pair->keySize());
  pair->exactDataSize_ = static_cast<std::uint16_t>(pair->dataSize());
  if (!is.read(static_cast<char*>(pair->key()), pair->keySize()) ||
      !is.read(static_cast<char*>(pair->data()), pair->dataSize())) {
    if (place == nullptr) destroy(pair);
    return nullptr;
  }
  return pair;
}

void FdPair::write(std::ostream& os, const FdPair* pair) {
  const std::uint32_t packed = pair->info_.packed() != 0 ? pair->info_.packed() : kEmptyPair;
  const char word[4] = {static_cast<char>(packed >> 24), static_cast<char>(packed >> 16),
                        static_cast<char>(packed >> 8), static_cast<char>(packed)};
  os.write(word, 4);
  os.write(static_cast<const char*>(pair->key()), pair->keySize());
  os.write(static_cast<const char*>(pair->data()), pair->dataSize());
}

void FdPair::writeEnd(std::ostream& os) { os.write("\0\0\0\0", 4); }

void FdPair::copy(FdPair* pair, const FdPair* from) {
  pair->info_ = from->info_;
  pair->exactKeySize_ = from->exactKeySize_;
  pair->exactDataSize_ = from->exactDataSize_;
  std::memcpy(pair->key(), from->key(), static_cast<std::size_t>(from->keySize()));
  std::memcpy(pair->data(), from->data(), static_cast<std::size_t>(from->dataSize()));
}

void FdPair::setPair(FdPair* pair, int hash, const void* key, int keySize, const void* data,
                     int dataSize) {
  pair->info_ = FdPairInfo(hash, keySize, dataSize);
  setKey(pair, key, keySize);
  setData(pair, data, dataSize);
}

void FdPair::setKey(FdPair* pair, const void* key, int keySize) {
  if (key == nullptr) THROW(FdPair, "Pair initialized with NULL key pointer");
  pair->exactKeySize_ = static_cast<std::uint16_t>(keySize);
  fill(static_cast<char*>(pair->key()), key, keySize, pair->keySize());
}

void FdPair::setData(FdPair* pair, const void* data, int dataSize) {
  pair->exactDataSize_ = static_cast<std::uint16_t>(dataSize);
  fill(static_cast<char*>(pair->data()), data, dataSize, pair->dataSize());
}

void FdPair::copyKey(void* place, int* size) const {
  copyOut(place, size, key(), exactKeySize_, keySize());
}

void FdPair::copyData(void* place, int* size) const {
  copyOut(place, size, data(), exactDataSize_, dataSize());
}

}  // namespace vandrelle
