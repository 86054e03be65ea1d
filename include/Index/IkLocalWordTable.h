// The word table of an index on disk, on the key file <root>.key. The data of a
// word there are 5 bytes: the low word of its row's position, big-endian, then
// one byte of the high word. Indexes of an earlier format have the low word only.
#pragma once

#include "Index/IkWordTable.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

class IkDataExtender;
class KdFileAccessor;

class IkLocalWordTable : public IkWordTable {
 public:
  // Owns neither. `extender` may be null.
  IkLocalWordTable(KdFileAccessor* keyfile, IkDataExtender* extender);

  using IkWordTable::lookup;
  int lookup(const WmWord* word, StStoragePos& position) override;
  int wordNum(const WmWord* word) override;
  const WmWord* word(int num) override;

  IkDataExtender* extender() const { return extender_; }

  // A word's data: the position of its row. Throws _Exception_Ik for a `size` that
  // is neither 4 nor 5. storePos() writes kDataSize bytes.
  static constexpr int32 kDataSize = 5;
  static StStoragePos pos(const void* data, int32 size);
  static void storePos(unsigned char* data, const StStoragePos& position);

  // Most bytes of a chunk of the key file.
  static constexpr int32 kChunkSize = 512;

  // Copies the data of a word, at most kMaxDataSize bytes, and answers their
  // number, -1 for a word that isn't there. Throws _Exception_Ik for a key file
  // with more.
  static constexpr int kMaxDataSize = 256;
  static int32 lookupData(KdFileAccessor* keyfile, const WmWord* word, unsigned char* value);

 private:
  char wordbuf_[65];
  WmWord* word_;  // in wordbuf_
  int wordsInKeyfile_;
  KdFileAccessor* keyfile_;
  IkDataExtender* extender_;
};

}  // namespace vandrelle
