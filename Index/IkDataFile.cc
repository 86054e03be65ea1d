#include "Index/IkDataFile.h"

#include "Document/DcStructureMap.h"
#include "Index/IkDataFileUnpacker.h"
#include "Index/IkDeleter.h"
#include "Index/IkException.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

// Room asked for before each entry: a change of the size mode, a gap of 4 bytes
// and a frequency of 2 take 8 of them.
constexpr int kEntryRoom = 10;

// gapLimits[n]: gaps of n bytes lie below it.
constexpr uint32 kGapLimits[] = {0, 0x7F, 0x7EFF, 0x7EFFFF};

struct DenseRow {
  const int* entries;
  int chunk(int i) const { return i; }
  int frequency(int i) const { return entries[i]; }
};

struct SparseRow {
  const IkDocumentInfo* entries;
  int chunk(int i) const { return entries[i].chunk; }
  int frequency(int i) const { return entries[i].frequency; }
};

inline int bytesNeeded(uint32 gap) {
  return 1 + (gap >= kGapLimits[1]) + (gap >= kGapLimits[2]) + (gap >= kGapLimits[3]);
}

template <typename Row>
bool gapsFit(const Row row, int rowSize, int start, int byteSize, int extent) {
  int last = row.chunk(start);
  for (int i = start + 1; i < rowSize; ++i) {
    const int chunk = row.chunk(i);
    const int needed = bytesNeeded(static_cast<uint32>(chunk) - static_cast<uint32>(last));
    // Also for an entry without frequency: the gap that follows is no smaller.
    if (needed > byteSize) return false;
    if (row.frequency(i) == 0) continue;
    if (needed != byteSize) return false;
    if (--extent == 0) return true;
    last = chunk;
  }
  return false;
}

int cutFrequency(int chunk, int frequency) {
  LOG(0, 0, "Frequency count too large: " << chunk << " " << frequency);
  return IkDataFile::kMaxFrequency;
}

[[noreturn]] void invalidByteSize() { THROW(Ik, "Invalid byte size"); }

template <typename Row>
int pack(const Row row, int rowSize, unsigned char* dest, int destSize) {
  int out = 0;
  int sizeMode = 2;
  int lastChunk = 0;
  for (int i = 0; i < rowSize; ++i) {
    if (out > destSize - kEntryRoom) return -1;
    int frequency = row.frequency(i);
    if (frequency == 0) continue;
    const int chunk = row.chunk(i);
    const uint32 gap = static_cast<uint32>(chunk) - static_cast<uint32>(lastChunk);
    const int needed = bytesNeeded(gap);
    // Narrowing must pay: a change costs 2 bytes, each gap saves the difference.
    if (needed != sizeMode &&
        (needed > sizeMode || gapsFit(row, rowSize, i, needed, 4 / (sizeMode - needed) + 1))) {
      dest[out++] = 255;
      dest[out++] = static_cast<unsigned char>(needed);
      sizeMode = needed;
    }

    // Gap and frequency go out as whole words with zeros behind what counts:
    // the length only moves `out`, so that the usual pair has no branch.
    if (static_cast<unsigned>(sizeMode - 1) > 3) invalidByteSize();
    if (frequency > IkDataFile::kMaxFrequency) frequency = cutFrequency(chunk, frequency);
    const bool once = frequency == 1;
    const bool two = frequency >= 128;
    storeU32(dest + out, gap << (32 - 8 * sizeMode) | static_cast<uint32>(once) << 31);
    out += sizeMode;
    const int coded = once ? 0 : two ? frequency | 0x8000 : frequency << 8;
    storeU16(dest + out, static_cast<std::uint16_t>(coded));
    out += !once + two;
    lastChunk = chunk;
  }
  return out;
}

}  // namespace

int IkDataFile::packBuffer(const int* row, int rowSize, unsigned char* dest, int destSize) {
  return pack(DenseRow{row}, rowSize, dest, destSize);
}

int IkDataFile::packBuffer(const IkDocumentInfo* docInfo, int rowSize, unsigned char* dest,
                           int destSize) {
  return pack(SparseRow{docInfo}, rowSize, dest, destSize);
}

int IkDataFile::packBufferImpl(const int* row, const IkDocumentInfo* docInfo, int rowSize,
                               unsigned char* dest, int destSize) {
  return row != nullptr ? packBuffer(row, rowSize, dest, destSize)
                        : packBuffer(docInfo, rowSize, dest, destSize);
}

int IkDataFile::rangeExtent(const int* row, const IkDocumentInfo* docInfo, int rowSize, int start,
                            int byteSize, int extent) {
  return row != nullptr ? gapsFit(DenseRow{row}, rowSize, start, byteSize, extent)
                        : gapsFit(SparseRow{docInfo}, rowSize, start, byteSize, extent);
}

void IkDataFile::unpackBuffer(const unsigned char* source, int sourceSize, float idf,
                              IkDataFileUnpacker* functor, IkDeleter* deleter,
                              DcStructureMap* structureMap) {
  const auto forward = [&](int docNum, int frequency) { functor->action(docNum, frequency, idf); };
  if (structureMap == nullptr && deleter == nullptr) {
    unpackPairs(source, sourceSize, forward);
  } else if (structureMap == nullptr) {
    unpackPairs(source, sourceSize, [&](int docNum, int frequency) {
      if (!deleter->isDeleted(docNum)) forward(docNum, frequency);
    });
  } else {
    unpackStructures(
        source, sourceSize,
        [&](int docNum) { return deleter == nullptr || !deleter->isDeleted(docNum); },
        [&](int docNum) {
          int place = 0;
          return structureMap->structure(docNum, 0, &place);
        },
        forward);
  }
}

void IkDataFile::logBadSizeMode() { LOG(0, 0, "Invalid size-mode while in datafile"); }

void IkDataFile::endsWithinPair() { THROW(Ik, "A row of the row data file ends within a pair"); }

}  // namespace vandrelle
