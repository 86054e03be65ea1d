#include "Index/IkProxBuffer.h"

namespace vandrelle {

IkProxBuffer::IkProxBuffer(const StStoragePos& start, uint32 len, StStorage* storage) {
  if (len == 0) return;
  buffer_ = storage->Get(start, len, kStRead, kStDefaultAdvice);
  data_ = buffer_.data();
  end_ = data_ + len;
}

void IkProxBuffer::pastEnd() { THROW(Ik, "Attempt to read past the positions of a word"); }

}  // namespace vandrelle
