// Writes a position map: for the keys 0, 1, 2, ... one position each, in little
// space. Every `interval`-th position stands in full, those between as deltas.
// A writer that adds the end of each item gives its reader the start of item k
// as lookup(k).
//
//   offset      size          content
//   0           4             signature, the bytes "PsMp"
//   4           4             interval, keys for each pointer
//   8           4             number of pointers
//   12          4             offset of the pointers
//   16          variable      deltas: each from one position to the next, from 0 on,
//                             in groups of 7 bits, lowest first, the high bit set on
//                             all bytes but the last; then zero bytes up to a
//                             multiple of 4
//   the offset  12 * number   pointers: 8 bytes the position before the group, 4 bytes
//                             where its deltas begin, from byte 16
//
// All words are big-endian. The number and the offset of the pointers are 0 until
// the map is closed, by destruction. Two positions are less than 4 GiB apart.
#pragma once

#include <vector>

#include "Storage/StAppendBuffer.h"
#include "Storage/StFileStorage.h"

namespace vandrelle {

constexpr uint32 kPosMapSignature = 0x50734D70;
constexpr uint32 kPosMapHeaderBytes = 16;
constexpr uint32 kPosMapPointerBytes = 12;

// A group of the map, as its pointer tells.
struct StPosMapPointer {
  StStoragePos pos_;   // the position before the group
  uint32 offset_ = 0;  // of its deltas, from byte 16 of the file

  void load(const unsigned char* from);
  void store(unsigned char* to) const;
};

class StPosMapCreator {
 public:
  // Replaces what stands at `file`. `interval` is at least 1. Throws _Exception_St,
  // as add() and the destructor do.
  StPosMapCreator(const char* file, uint32 interval);
  ~StPosMapCreator();

  // The position of the next key, not below that of the one before. Throws
  // _Exception_St for one that the map can't hold.
  void add(const StStoragePos& pos);

 private:
  void putWord(uint32 word);

  StFileStorage storage_;
  StAppendBuffer buffer_;
  uint32 interval_;
  std::vector<unsigned char> pointers_;  // as in the file
  uint32 key_ = 0;
  StStoragePos pos_;
};

}  // namespace vandrelle
