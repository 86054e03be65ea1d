// The decoder of the numbers of a proximity file (see IkProxCreator.h).
#pragma once

#include "Index/IkException.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

// The next number out of `nextByte()`. Throws _Exception_Ik for one of more than 5
// bytes; of the last, the bits beyond 32 are lost.
template <typename NextByte>
uint32 IkReadProxNumber(NextByte&& nextByte) {
  uint32 group = nextByte();
  if (group < 0x80) return group;
  uint32 num = group & 0x7F;
  for (int shift = 7; shift < 35; shift += 7) {
    group = nextByte();
    num |= (group & 0x7F) << shift;
    if (group < 0x80) return num;
  }
  THROW(Ik, "A number of the proximity file is too long");
}

}  // namespace vandrelle
