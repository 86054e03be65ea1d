// Writes the key files that are read by mapping, kinds 14 and 16: constant data,
// letters of one byte. The index's word table is one.
//
// <root>.ptr, big-endian:
//
//   offset                 size               content
//   0                      4                  type code, 14 or 16
//   4                      4                  chunk_size, most bytes of a chunk
//   8                      4                  data_size, bytes of data an entry
//   12                     4                  total_bytes, length of <root>.key
//   16                     4                  num_chunks
//   20                     12 * num_chunks    records: offset of the chunk in
//                                             <root>.key, offset of its first word
//                                             in the word area, that word's number
//   behind the records     to the end         word area: a byte of letter count and
//                                             the letters of each first word
//
// <root>.key: the chunks (see KdChunk.h), back to back. While the table is being
// written the word area grows in <root>.wrd, because the number of records is
// known only at the end.
#pragma once

#include "KeyFile/KdChunkCreator.h"
#include "Tool/NameManager.h"

namespace vandrelle {

class KdMmapCreator final : public KdChunkCreator {
 public:
  // `file_name` is the root name, sizes are in bytes, `type` is written as it
  // stands. Throws _Exception_KdInit, and _Exception_IO if a file cannot be made.
  // Every entry gets `data_size` bytes, whatever Add_Entry says; data must have
  // as many.
  KdMmapCreator(const char* file_name, int32 chunk_size, int32 data_size, int32 type);
  // Completes the files. Throws _Exception_IO.
  ~KdMmapCreator() override;

 private:
  void Write_To_Pointer_File(const WmWord* aWord) override;
  void Append_Words();

  NameManager base_name_;
  std::fstream ptr_file_;
  std::fstream wrd_file_;
  int32 wrd_file_pos_ = 0;
};

}  // namespace vandrelle
