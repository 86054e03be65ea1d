#include "Fun/FdMultiAllocator.h"

namespace vandrelle {

FdMultiAllocator::FdMultiAllocator(int maxSize)
    : maxSize_(maxSize > 0 ? (maxSize + 3) / 4 : 0),
      allocTable_(static_cast<std::size_t>(maxSize_)) {}

void FdMultiAllocator::init(int size, int chunk) {
  const int number = sizeClass(size);
  if (number >= maxSize_) return;
  std::unique_ptr<FdAllocator>& pool = allocTable_[static_cast<std::size_t>(number)];
  if (pool == nullptr) pool = std::make_unique<FdAllocator>(number * 4);
  if (chunk != 0) pool->chunksize(chunk);
}

void FdMultiAllocator::deallocateAll() {
  for (const auto& pool : allocTable_) {
    if (pool != nullptr) pool->deallocateAll();
  }
}

std::int64_t FdMultiAllocator::totalBytes() const {
  std::int64_t bytes = 0;
  for (const auto& pool : allocTable_) {
    if (pool != nullptr) bytes += pool->totalBytes();
  }
  return bytes;
}

}  // namespace vandrelle
