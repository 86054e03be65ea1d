// Collects bytes and appends them to a storage in runs.
//
// The inner loop of every sequential writer: put() is a bound test and a store;
// the storage is touched once per `bufsize` bytes. Not for random access: use a
// StStorageHandle. The storage must outlive the buffer.
#pragma once

#include <cstddef>

#include "Storage/StStorage.h"

namespace vandrelle {

class StAppendBuffer {
 public:
  // `bufsize` in bytes, at least 1. Does not own `storage`.
  StAppendBuffer(StStorage* storage, int bufsize);
  ~StAppendBuffer();  // flushes
  StAppendBuffer(const StAppendBuffer&) = delete;
  StAppendBuffer& operator=(const StAppendBuffer&) = delete;

  void put(char c) { put(static_cast<unsigned char>(c)); }
  void put(unsigned char c) {
    if (pos_ == max_) flush();
    buffer_[pos_++] = c;
  }
  // As many put() calls, in pieces of what the buffer has room for.
  void put(const void* bytes, std::size_t length);

  // Appends what is waiting to the end of the storage; nothing if nothing waits.
  // Throws _Exception_St when the storage cannot grow.
  void flush();

  // The position that the next byte will have in the storage.
  StStoragePos tellp() const;

 private:
  StStorage* storage_;
  byte* buffer_;
  int max_;
  int pos_ = 0;  // bytes waiting
};

}  // namespace vandrelle
