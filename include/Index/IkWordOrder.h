// The order of WmWord::cmp, decided in most cases by one comparison of numbers:
// the first eight letters of a word, padded with zero bytes, as a big-endian
// number. No letter is a zero byte, so unequal numbers have the words' order.
#pragma once

#include <cstdint>
#include <cstring>

#include "Tool/ByteOrder.h"
#include "Word.h"

namespace vandrelle {

inline std::uint64_t wordPrefix(const WmWord* word) {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(word);
  unsigned char letters[8] = {};
  std::memcpy(letters, bytes + 1, bytes[0] < 8 ? bytes[0] : 8);
  return loadU64(letters);
}

// Negative, 0 or positive, as WmWord::cmp.
inline int compareWords(std::uint64_t prefixA, const WmWord* a, std::uint64_t prefixB,
                        const WmWord* b) {
  if (prefixA != prefixB) return prefixA < prefixB ? -1 : 1;
  return WmWord::cmp(a, b);
}

}  // namespace vandrelle
