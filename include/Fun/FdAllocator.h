// A pool of blocks of one size, for many small records without a heap header each.
//
// Blocks come from chunks, and a block that is given back is the next to go out; the
// free ones are linked through their own first bytes. Memory returns to the system
// only as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Fun/FdVector.h"

namespace vandrelle {

class FdAllocator {
 public:
  // `blocksize` in bytes. A block starts on a multiple of 8 if its size is one, and
  // of 4 otherwise. Throws _Exception_Fatal below 4.
  explicit FdAllocator(int blocksize);
  ~FdAllocator() { deallocateAll(); }
  FdAllocator(const FdAllocator&) = delete;
  FdAllocator& operator=(const FdAllocator&) = delete;

  // A block whose content does not matter.
  void* allocate() {
    if (freelist_ == nullptr) allocateNew();
    void* block = freelist_;
    std::memcpy(&freelist_, block, sizeof freelist_);
    return block;
  }

  // `block` is one of this allocator's.
  void deallocate(void* block) {
    std::memcpy(block, &freelist_, sizeof freelist_);
    freelist_ = block;
  }

  // All blocks at once, also those that are out.
  void deallocateAll();

  // What the chunks take.
  std::int64_t totalBytes() const { return totalBytes_; }
  int blocksize() const { return blocksize_; }
  // Blocks per chunk, for the chunks to come; 1024 at first.
  int chunksize() const { return chunksize_; }
  void chunksize(int blocks) { chunksize_ = blocks > 0 ? blocks : 1; }

 private:
  void allocateNew();
  // A block has room for the link, however small it was asked for.
  int stride() const {
    const int rounded = (blocksize_ + 3) & ~3;
    return rounded < static_cast<int>(sizeof(void*)) ? static_cast<int>(sizeof(void*)) : rounded;
  }

  int chunksize_ = 1024;
  int blocksize_;
  std::int64_t totalBytes_ = 0;
  void* freelist_ = nullptr;
  FdVector<void*> chunks_;
};

}  // namespace vandrelle
