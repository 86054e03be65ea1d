// Writes the plain key files, kinds 7 to 10 (and, as a base, 11).
//
//   kind   data                    letters
//   7      a size byte an entry    5 bits
//   8      constant                5 bits
//   9      constant                a byte
//   10     a size byte an entry    a byte
//   11     0 or 4 bytes, inline    a byte
//
// <root>.ptr, big-endian:
//
//   offset   size       content
//   0        4          type code
//   4        4          chunk_size, most bytes of a chunk
//   8        4          data_size, bytes of data an entry; kinds 8 and 9 only
//   12       4          total_bytes, length of <root>.key
//   16       4          num_chunks
//   20       variable   a record for each chunk: 4 bytes offset in <root>.key,
//                       2 bytes letter count of its first word, the letters, 4 bytes
//                       number of that word
//
// <root>.key: the chunks (see KdChunk.h), back to back.
#pragma once

#include "KeyFile/KdChunkCreator.h"

namespace vandrelle {

class KdFileALCreator : public KdChunkCreator {
 public:
  // `file_name` is the root name; sizes are in bytes. Throws _Exception_KdInit,
  // and _Exception_IO if a file cannot be made.
  KdFileALCreator(const char* file_name, int32 chunk_size, int32 data_size, int32 type);
  // Completes the files. Throws _Exception_IO.
  ~KdFileALCreator() override;

 protected:
  void Write_To_Pointer_File(const WmWord* aWord) override;

 private:
  std::fstream ptr_file_;
};

}  // namespace vandrelle
