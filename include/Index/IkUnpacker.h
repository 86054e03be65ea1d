// A cursor over the pairs of one row (see IkDataFile.h), which stands on a pair
// while more() and goes on with read(). Scoring loops work on a copy of their own
// and put it back, so that the cursor stays in registers.
#pragma once

#include <cstring>
#include <limits>

#include "Tool/ByteOrder.h"

namespace vandrelle {

class IkDataFileBinder;

// The place of a cursor.
struct IkUnpackerState {
  const unsigned char* source = nullptr;  // what read() decodes next
  int docNum = 0;
  int docFreq = 0;
  int sizeMode = 0;
  int more = 0;
};

class IkUnpacker {
 public:
  // The size mode at the start of a row of the row data file, and that of a row of
  // pairs of 32-bit numbers in the host's order, document and frequency.
  static constexpr int kRowMode = 2;
  static constexpr int kAbsolute = -1;

  // An empty row, or as set() does.
  IkUnpacker() = default;
  IkUnpacker(const unsigned char* buffer, int size, int initialSizeMode = kRowMode) {
    set(buffer, size, initialSizeMode);
  }
  IkUnpacker(IkDataFileBinder* binder, int initialSizeMode) { set(binder, initialSizeMode); }

  // Stands on the first pair of `size` bytes, which aren't owned and must outlive the
  // cursor. The second form takes the binder's current row, good until the binder
  // moves, and its idf; it throws what loadRow() throws.
  void set(const unsigned char* buffer, int size, int initialSizeMode = kRowMode);
  void set(IkDataFileBinder* binder, int initialSizeMode);
  void reset();

  // A row ends before the first document from `count` on: a damaged row must not
  // lead outside of the collection. To be set before the row.
  void documents(int count) { numDocuments_ = static_cast<uint32>(count > 0 ? count : 0); }

  // Steps to the next pair. A row ends also where a pair is cut off, and at a size
  // mode outside of 1 to 4.
  void read();

  bool more() const { return more_ != 0; }
  // While more():
  int docNum() const { return docNum_; }
  int docFreq() const { return docFreq_; }

  float idf() const { return idf_; }
  void idf(float value) { idf_ = value; }

  IkUnpackerState state() const { return {source_, docNum_, docFreq_, sizeMode_, more_}; }
  // Takes a state of this same row.
  void state(const IkUnpackerState& state);

 private:
  // A change of the size mode, a gap of 4 bytes and a frequency of 2.
  static constexpr int kMaxPairBytes = 8;

  // Both step a state on; the first reads up to kMaxPairBytes, the second nothing
  // behind `end`. They take no cursor, which would have to lie in memory for it.
  static void decode(IkUnpackerState& state);
  static IkUnpackerState decodeTail(IkUnpackerState state, const unsigned char* end);

  static bool isSizeMode(int mode) { return mode >= 1 && mode <= 4; }

  int docNum_ = 0;
  int docFreq_ = 0;
  const unsigned char* source_ = nullptr;
  const unsigned char* sourceStart_ = nullptr;
  const unsigned char* sourceEnd_ = nullptr;
  int sizeMode_ = kRowMode;
  int initialSizeMode_ = kRowMode;
  int more_ = 0;
  float idf_ = 0;
  uint32 numDocuments_ = static_cast<uint32>(std::numeric_limits<int>::max());
};

inline void IkUnpacker::state(const IkUnpackerState& state) {
  source_ = state.source;
  docNum_ = state.docNum;
  docFreq_ = state.docFreq;
  sizeMode_ = state.sizeMode;
  more_ = state.more;
}

[[gnu::always_inline]] inline void IkUnpacker::decode(IkUnpackerState& state) {
  const unsigned char* source = state.source;
  if (state.sizeMode == kAbsolute) {
    std::memcpy(&state.docNum, source, 4);
    std::memcpy(&state.docFreq, source + 4, 4);
    state.source = source + 8;
    return;
  }
  if (*source == 255) {
    state.sizeMode = source[1];
    source += 2;
    if (!isSizeMode(state.sizeMode)) {
      state.more = 0;
      return;
    }
  }
  const uint32 gap = loadU32(source);
  source += state.sizeMode;
  state.docNum = static_cast<int>(static_cast<uint32>(state.docNum) +
                                  ((gap & 0x7FFFFFFFu) >> (32 - 8 * state.sizeMode)));
  if (gap & 0x80000000u) {
    state.docFreq = 1;
  } else {
    const int frequency = *source++;
    state.docFreq = frequency & 0x80 ? (frequency & 0x7F) << 8 | *source++ : frequency;
  }
  state.source = source;
}

[[gnu::always_inline]] inline void IkUnpacker::read() {
  IkUnpackerState next = state();
  if (sourceEnd_ - source_ >= kMaxPairBytes) {
    decode(next);
  } else {
    next = decodeTail(next, sourceEnd_);
  }
  if (next.more == 0 || static_cast<uint32>(next.docNum) >= numDocuments_) {
    next.more = 0;
    next.source = sourceEnd_;
  }
  state(next);
}

}  // namespace vandrelle
