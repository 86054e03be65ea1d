#include "Index/IkProxBuffer.h"

#include <bit>
#include <cstring>

namespace vandrelle {

IkProxBuffer::IkProxBuffer(const StStoragePos& start, uint32 len, StStorage* storage) {
  if (len == 0) return;
  buffer_ = storage->Get(start, len, kStRead, kStDefaultAdvice);
  data_ = buffer_.data();
  end_ = data_ + len;
}

// The last byte of a number is the one without the top bit: eight bytes at a time
// these are counted, as long as no more than `count` are there.
void IkProxBuffer::skip(std::uint64_t count) {
  while (count >= 8 && end_ - data_ >= 8) {
    std::uint64_t bytes;
    std::memcpy(&bytes, data_, sizeof bytes);
    count -= static_cast<std::uint64_t>(std::popcount(~bytes & 0x8080808080808080u));
    data_ += 8;
  }
  while (count > 0) {
    if (data_ == end_) pastEnd();
    if (*data_++ < 0x80) --count;
  }
}

void IkProxBuffer::pastEnd() { THROW(Ik, "Attempt to read past the positions of a word"); }

}  // namespace vandrelle
