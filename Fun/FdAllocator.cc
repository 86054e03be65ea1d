#include "Fun/FdAllocator.h"

#include <new>

#include "Exception.h"

namespace vandrelle {

FdAllocator::FdAllocator(int blocksize) : blocksize_(blocksize) {
  if (blocksize < 4) THROW(Fatal, "FdAllocator: blocksize must be greater than 4");
}

// Threaded upwards, so that the highest block goes out first.
void FdAllocator::allocateNew() {
  const std::size_t step = static_cast<std::size_t>(stride());
  const std::size_t bytes = static_cast<std::size_t>(chunksize_) * step;
  char* chunk = static_cast<char*>(::operator new(bytes));
  totalBytes_ += static_cast<std::int64_t>(bytes);
  chunks_.push(chunk);
  for (std::size_t offset = 0; offset < bytes; offset += step) deallocate(chunk + offset);
}

void FdAllocator::deallocateAll() {
  while (!chunks_.empty()) ::operator delete(chunks_.pop());
  freelist_ = nullptr;
  totalBytes_ = 0;
}

}  // namespace vandrelle
