// Pools for several small sizes, one FdAllocator for each size class of 4 bytes.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include "Fun/FdAllocator.h"

namespace vandrelle {

class FdMultiAllocator {
 public:
  // Pools serve sizes of less than `maxSize` bytes, rounded up to 4; larger blocks
  // come from the heap.
  explicit FdMultiAllocator(int maxSize);
  FdMultiAllocator(const FdMultiAllocator&) = delete;
  FdMultiAllocator& operator=(const FdMultiAllocator&) = delete;

  // Makes the pool of a size, if there is none; a `chunk` that is not 0 sets its
  // blocks per chunk. Sizes that were never made get their pool on first use.
  void init(int size, int chunk);

  // A block of at least `size` bytes, which deallocate() gets back with the same
  // size.
  void* allocate(int size) {
    const int number = sizeClass(size);
    if (number >= maxSize_) return ::operator new(static_cast<std::size_t>(size));
    std::unique_ptr<FdAllocator>& pool = allocTable_[static_cast<std::size_t>(number)];
    if (pool == nullptr) init(size, 0);
    return pool->allocate();
  }
  void deallocate(void* block, int size) {
    const int number = sizeClass(size);
    if (number >= maxSize_) {
      ::operator delete(block);
    } else {
      allocTable_[static_cast<std::size_t>(number)]->deallocate(block);
    }
  }

  // All blocks of all pools at once; those from the heap stay.
  void deallocateAll();

  // What the chunks of all pools take.
  std::int64_t totalBytes() const;

 private:
  static int sizeClass(int size) { return size > 4 ? (size + 3) / 4 : 1; }

  int maxSize_;  // number of size classes, counting 0
  std::vector<std::unique_ptr<FdAllocator>> allocTable_;
};

// Pooled objects of one type.
template <typename T>
class FdTemplateAllocator {
 public:
  FdTemplateAllocator() : allocator_(static_cast<int>(sizeof(T)) + 4) {
    static_assert(alignof(T) <= 8);
    allocator_.init(static_cast<int>(sizeof(T)), 0);
  }

  // Room for one T, in which nothing is constructed yet; deallocate() destroys
  // nothing.
  T* allocate() { return static_cast<T*>(allocator_.allocate(static_cast<int>(sizeof(T)))); }
  void deallocate(T* object) { allocator_.deallocate(object, static_cast<int>(sizeof(T))); }
  void deallocateAll() { allocator_.deallocateAll(); }
  std::int64_t totalBytes() const { return allocator_.totalBytes(); }

 private:
  FdMultiAllocator allocator_;
};

}  // namespace vandrelle
