// Numbers of 7 bits a byte, lowest group first, the top bit set on every byte but the
// last: those of the proximity files and of position maps.
#pragma once

#include "Tool/ByteOrder.h"

namespace vandrelle {

// Hands the bytes of a number to `put(byte)`.
template <typename Put>
inline void putSevenBit(uint32 number, Put&& put) {
  for (; number >= 0x80; number >>= 7) put(static_cast<unsigned char>(number | 0x80));
  put(static_cast<unsigned char>(number));
}

// The next number out of `nextByte()`; false for one of more than 5 bytes. Of the last,
// the bits beyond 32 are lost.
template <typename NextByte>
inline bool getSevenBit(NextByte&& nextByte, uint32* number) {
  *number = nextByte();
  if (*number < 0x80) return true;
  *number &= 0x7F;
  for (int shift = 7; shift < 35; shift += 7) {
    const uint32 group = nextByte();
    *number |= (group & 0x7F) << shift;
    if (group < 0x80) return true;
  }
  return false;
}

}  // namespace vandrelle
