// Reads a storage byte by byte, in windows of `bufsize` bytes: get() is a bound
// test and a load, the storage is touched once a window. Seeking inside the
// window is free.
#pragma once

#include "Storage/StStorageHandle.h"

namespace vandrelle {

class StInputBuffer {
 public:
  // `bufsize` in bytes, at least 1. The storage is open; it is destroyed with the
  // buffer if `delStorage` says so.
  StInputBuffer(StStorage* storage, int bufsize, bool delStorage);
  ~StInputBuffer();
  StInputBuffer(const StInputBuffer&) = delete;
  StInputBuffer& operator=(const StInputBuffer&) = delete;

  // Throws _Exception_St at the end of the storage.
  unsigned char get() {
    if (offset_ == buflen_) refill();
    return data_[offset_++];
  }

  // Any position may be sought: only the next get() fails beyond the end.
  void seekg(const StStoragePos& pos);
  StStoragePos tellg() const { return base_ + static_cast<uint32>(offset_); }

 private:
  void refill();

  int offset_ = 0;  // in the window, from base_
  int buflen_ = 0;
  byte* data_ = nullptr;
  int bufsize_;
  StPos base_;
  StStorage* storage_;
  StHandle buffer_;
  bool deleteStorage_;
};

}  // namespace vandrelle
