// The positions of one word, out of a proximity file.
#pragma once

#include <cstdint>

#include "Index/IkProxNumber.h"
#include "Storage/StStorage.h"
#include "Storage/StStorageHandle.h"
#include "Storage/StStoragePos.h"

namespace vandrelle {

// A place in a IkProxBuffer to come back to.
struct IkProxBufferState {
  const unsigned char* data = nullptr;
  uint32 lastpos = 0;
};

class IkProxBuffer {
 public:
  // `len` bytes from `start` on. The storage must outlive the buffer.
  IkProxBuffer(const StStoragePos& start, uint32 len, StStorage* storage);

  // A new chunk begins.
  void reset() { lastpos_ = 0; }
  // The next position in the chunk, or the next number as it stands. Both throw
  // _Exception_Ik at the end of the word's bytes.
  uint32 get() { return lastpos_ += readnum(); }
  uint32 readnum() {
    return IkReadProxNumber([this]() -> uint32 {
      if (data_ == end_) pastEnd();
      return *data_++;
    });
  }

  // Passes over `count` numbers. Throws as readnum() does, but takes a number of any
  // length.
  void skip(std::uint64_t count);

  // The place where reading stands, and back to one of this very buffer.
  IkProxBufferState state() const { return {data_, lastpos_}; }
  void state(const IkProxBufferState& saved) {
    data_ = saved.data;
    lastpos_ = saved.lastpos;
  }

 private:
  [[noreturn]] static void pastEnd();

  StBuffer buffer_;
  const unsigned char* data_ = nullptr;
  const unsigned char* end_ = nullptr;
  uint32 lastpos_ = 0;
};

}  // namespace vandrelle
