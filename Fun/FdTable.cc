#include "Fun/FdTable.h"

#include <bit>

#include "Fun/FdException.h"

namespace vandrelle {

namespace {

constexpr int kMaxHint = 4096;

int bucketsFor(int hint) {
  if (hint < 2) THROW(Fd, "A table cannot be made for a hint of " << hint << "; use at least 2.");
  if (hint > kMaxHint) hint = kMaxHint;
  return static_cast<int>(std::bit_floor(static_cast<unsigned>(hint)) / 2);
}

}  // namespace

FdTable::FdTable() : FdTable(32) {}

FdTable::FdTable(int hint)
    : numBuckets_(bucketsFor(hint)),
      buckets_(std::make_unique<FdBucket[]>(static_cast<std::size_t>(numBuckets_))) {}

FdTable::~FdTable() = default;

FdBucket& FdTable::bucketOf(const void* key, int keySize) {
  if (key == nullptr) keySize = 0;
  return buckets_[static_cast<std::size_t>(hash(key, keySize) & (numBuckets_ - 1))];
}

void FdTable::insert(const void* key, int keySize, const void* data, int dataSize) {
  if (bucketOf(key, keySize).replace(key, keySize, data, dataSize)) ++count_;
}

bool FdTable::remove(const void* key, int keySize, void* data, int* dataSize) {
  if (!bucketOf(key, keySize).remove(key, keySize, data, dataSize)) return false;
  --count_;
  return true;
}

bool FdTable::find(const void* key, int keySize, void* data, int* dataSize) {
  return bucketOf(key, keySize).find(key, keySize, data, dataSize);
}

FdIterator* FdTable::iterator() { return new FdTableIterator(this); }

void FdTable::read(std::istream& is) {
  while (FdPair* pair = FdPair::read(is, nullptr)) {
    insert(pair->key(), pair->keySize(), pair->data(), pair->dataSize());
    FdPair::destroy(pair);
  }
}

void FdTable::write(std::ostream& os) {
  for (int i = 0; i < numBuckets_; ++i) {
    for (const FdPair* pair = buckets_[static_cast<std::size_t>(i)].peekPair(); pair != nullptr;
         pair = pair->next()) {
      FdPair::write(os, pair);
    }
  }
  FdPair::writeEnd(os);
}

FdPair* FdTable::getnextPair() {
  for (int i = 0; i < numBuckets_; ++i) {
    FdPair* pair = buckets_[static_cast<std::size_t>(i)].getnextPair();
    if (pair != nullptr) {
      --count_;
      return pair;
    }
  }
  return nullptr;
}

void FdTableIterator::reset() {
  bucket_ = 0;
  pair_ = table_->buckets_[0].peekPair();
  skipEmpty();
}

int FdTableIterator::next() {
  pair_ = pair_->next();
  skipEmpty();
  return pair_ != nullptr;
}

void FdTableIterator::skipEmpty() {
  while (pair_ == nullptr && ++bucket_ < table_->numBuckets_) {
    pair_ = table_->buckets_[static_cast<std::size_t>(bucket_)].peekPair();
  }
}

}  // namespace vandrelle
