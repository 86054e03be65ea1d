// The decoder of the numbers of a proximity file (see IkProxCreator.h).
#pragma once

#include "Index/IkException.h"
#include "Tool/SevenBit.h"

namespace vandrelle {

// The next number out of `nextByte()`. Throws _Exception_Ik for one that is too long.
template <typename NextByte>
uint32 IkReadProxNumber(NextByte&& nextByte) {
  uint32 number;
  if (getSevenBit(nextByte, &number)) return number;
  THROW(Ik, "A number of the proximity file is too long");
}

}  // namespace vandrelle
