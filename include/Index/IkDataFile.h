// The row data file, <root>.dat: the inverted file of an index. For each word,
// in word order, one row of (chunk, frequency) pairs; the word table leads to
// it. No file header. Each row starts on a multiple of 4; all is big-endian:
//
//   offset  size
//        0     4  flags     bit 31: the row goes on in the extension,
//                           bits 0 to 30: dataSize, bytes
//        4     4  scale     float, the word's idf when the row was written
//        8  dataSize        packed pairs
//               0 to 3      zero padding to a multiple of 4
//
// Packed pairs. A byte width, the size mode, is 2 at the start of a row. Each
// pair is the gap to the chunk before it (the first to 0) in that many bytes,
// then the frequency:
//
//   first byte 255       no pair: the next byte is the new size mode, 1 to 4
//   top bit of gap set   the frequency is 1 and takes no byte
//   top bit clear        one byte below 128, or two with the top bit of the
//                        high one set: frequencies up to 32,767
//
// A gap may have a size mode only below 0x7F, 0x7EFF, 0x7EFFFF for 1, 2, 3
// bytes, so that a gap with its top bit set never begins with 255.
//
// IkDataFileCreator writes the file, IkDataFileBinder reads it.
#pragma once

#include <algorithm>
#include <cstring>

#include "Index/IkDocumentInfo.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

class DcStructureMap;
class IkDataFileUnpacker;
class IkDeleter;

// The header of a row, in memory.
struct IkDataFileFormat {
  static constexpr int kHeaderSize = 8;
  static constexpr uint32 kExtended = 0x80000000u;

  uint32 flags = 0;
  float scale = 0;

  bool extendedData() const { return (flags & kExtended) != 0; }
  uint32 dataSize() const { return flags & ~kExtended; }
  // Bytes of the whole row in the file. At most 2^31 + 8.
  uint32 linesize() const { return (dataSize() + 3) / 4 * 4 + kHeaderSize; }

  void load(const unsigned char* bytes) {
    flags = loadU32(bytes);
    scale = loadFloat(bytes + 4);
  }
  void store(unsigned char* bytes) const {
    storeU32(bytes, flags);
    storeFloat(bytes + 4, scale);
  }
};

class IkDataFile {
 public:
  static constexpr int kMaxFrequency = 32767;

  // Packs a row into `dest` and answers the bytes used, or -1 when `destSize`
  // bytes may be too few: before each entry 10 bytes must be free. May store
  // zeros behind the packed bytes, within `destSize`. A frequency over
  // kMaxFrequency is cut to it, with a log line.
  // Dense: `row[i]` is the frequency in chunk i, 0 for none.
  static int packBuffer(const int* row, int rowSize, unsigned char* dest, int destSize);
  // Sparse: `rowSize` pairs in rising order of chunks; those of frequency 0 are
  // passed over.
  static int packBuffer(const IkDocumentInfo* docInfo, int rowSize, unsigned char* dest,
                        int destSize);
  // Either form: exactly one of `row` and `docInfo` isn't null.
  static int packBufferImpl(const int* row, const IkDocumentInfo* docInfo, int rowSize,
                            unsigned char* dest, int destSize);

  // Do the `extent` gaps behind entry `start` all need exactly `byteSize` bytes?
  // 0 also if there are fewer.
  static int rangeExtent(const int* row, const IkDocumentInfo* docInfo, int rowSize, int start,
                         int byteSize, int extent);

  // Decodes a packed row, calling the functor for each pair of a chunk that
  // `deleter` (may be null) doesn't call deleted. With a structure map, pairs in
  // succession that map to the same structure arrive as one, summed up.
  // A size mode outside of 1 to 4 is logged and ends the row; a row that ends
  // within a pair throws _Exception_Ik.
  static void unpackBuffer(const unsigned char* source, int sourceSize, float idf,
                           IkDataFileUnpacker* functor, IkDeleter* deleter,
                           DcStructureMap* structureMap);

  // The decoding loop: `action(doc_num, doc_freq)` once a pair, inlined. False
  // when a bad size mode has ended the row early, true otherwise.
  template <typename Action>
  static bool unpackPairs(const unsigned char* source, int sourceSize, Action&& action);

  // The same for the chunks that `isLive(doc_num)` accepts, mapped by
  // `structureOf(doc_num)`; pairs in succession with the same structure are
  // added up. The last sum is lost when a bad size mode ends the row.
  template <typename IsLive, typename StructureOf, typename Action>
  static void unpackStructures(const unsigned char* source, int sourceSize, IsLive&& isLive,
                               StructureOf&& structureOf, Action&& action);

 private:
  static constexpr int kMaxPairBytes = 6;
  static constexpr int kModeChange = -1;
  static constexpr int kBadMode = -2;

  // What stands at `cursor`: a frequency, or one of the two codes above. Reads
  // at most kMaxPairBytes.
  static int decode(const unsigned char*& cursor, int& sizeMode, uint32& docNum);

  static void logBadSizeMode();
  [[noreturn]] static void endsWithinPair();
};

inline int IkDataFile::decode(const unsigned char*& cursor, int& sizeMode, uint32& docNum) {
  const unsigned first = *cursor;
  if (first == 255) {
    sizeMode = cursor[1];
    cursor += 2;
    return sizeMode >= 1 && sizeMode <= 4 ? kModeChange : kBadMode;
  }
  docNum += (loadU32(cursor) & 0x7FFFFFFFu) >> (32 - 8 * sizeMode);
  cursor += sizeMode;
  if (first & 0x80) return 1;
  const int frequency = *cursor++;
  return frequency & 0x80 ? (frequency & 0x7F) << 8 | *cursor++ : frequency;
}

template <typename Action>
bool IkDataFile::unpackPairs(const unsigned char* source, int sourceSize, Action&& action) {
  int sizeMode = 2;
  uint32 docNum = 0;
  const unsigned char* const end = source + std::max(sourceSize, 0);
  while (end - source >= kMaxPairBytes) {
    const int frequency = decode(source, sizeMode, docNum);
    if (frequency >= 0) {
      action(static_cast<int>(docNum), frequency);
    } else if (frequency == kBadMode) {
      logBadSizeMode();
      return false;
    }
  }

  // The last bytes, with zeros behind them: nothing past the row is read.
  unsigned char tail[2 * kMaxPairBytes] = {};
  std::memcpy(tail, source, static_cast<std::size_t>(end - source));
  const unsigned char* const tailEnd = tail + (end - source);
  for (const unsigned char* cursor = tail; cursor < tailEnd;) {
    const int frequency = decode(cursor, sizeMode, docNum);
    if (frequency == kBadMode) {
      logBadSizeMode();
      return false;
    }
    if (cursor > tailEnd) endsWithinPair();
    if (frequency >= 0) action(static_cast<int>(docNum), frequency);
  }
  return true;
}

template <typename IsLive, typename StructureOf, typename Action>
void IkDataFile::unpackStructures(const unsigned char* source, int sourceSize, IsLive&& isLive,
                                  StructureOf&& structureOf, Action&& action) {
  bool pending = false;
  int current = 0;
  int sum = 0;
  const bool complete = unpackPairs(source, sourceSize, [&](int docNum, int frequency) {
    if (!isLive(docNum)) return;
    const int structure = structureOf(docNum);
    if (pending && structure == current) {
      sum += frequency;
      return;
    }
    if (pending) action(current, sum);
    pending = true;
    current = structure;
    sum = frequency;
  });
  if (complete && pending) action(current, sum);
}

}  // namespace vandrelle
