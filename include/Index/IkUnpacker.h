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
  // moves, and its idf.
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
  // `state` is one of this row.
  void state(const IkUnpackerState& state);

 private:
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

}  // namespace vandrelle
