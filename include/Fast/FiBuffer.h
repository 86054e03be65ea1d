// Serial access to bytes in memory, one at a time. Values of more than one byte
// go low byte first: the one little-endian corner of the system's files.
#pragma once

#include "Tool/ByteOrder.h"

namespace vandrelle {

class FiBuffer {
 public:
  // On `size` bytes at `base`, freed with delete[] if `owner` is set.
  FiBuffer(unsigned char* base, int size, int owner = 0)
      : base_(base), size_(size), owner_(owner) {}
  ~FiBuffer() {
    if (owner_ != 0) delete[] base_;
  }
  FiBuffer(const FiBuffer&) = delete;
  FiBuffer& operator=(const FiBuffer&) = delete;

  // At or past the end a put is dropped and a get yields 0.
  void put(unsigned char byte) {
    if (current_ >= 0 && current_ < size_) base_[current_] = byte;
    ++current_;
  }
  unsigned char get() {
    const unsigned char byte = current_ >= 0 && current_ < size_ ? base_[current_] : 0;
    ++current_;
    return byte;
  }
  void put2b(unsigned value) {
    put(static_cast<unsigned char>(value));
    put(static_cast<unsigned char>(value >> 8));
  }
  unsigned get2b() {
    const unsigned low = get();
    return low | static_cast<unsigned>(get()) << 8;
  }
  void put4b(uint32 value) {
    put2b(value & 0xFFFF);
    put2b(value >> 16);
  }
  uint32 get4b() {
    const uint32 low = get2b();
    return low | uint32{get2b()} << 16;
  }

  int pos() const { return current_; }
  void pos(int position) { current_ = position; }
  int size() const { return size_; }
  unsigned char& operator[](int i) { return base_[i]; }
  unsigned char* buffer() { return base_; }
  // Hands the bytes to the caller, who frees them if they were owned.
  unsigned char* release() {
    owner_ = 0;
    return base_;
  }

 private:
  unsigned char* base_;
  int size_;
  int current_ = 0;
  int owner_;
};

}  // namespace vandrelle
