// Writes the stop-style key files, kinds 12, 13 and 15: small tables from a word to
// another word, such as the stop table. Keys are short and data often begin like
// their key, so data are stored as a difference from it, and all offsets have 16
// bits.
//
// <root>.ptr, big-endian:
//
//   offset   size       content
//   0        4          type code
//   4        2          lz_data, 1: data are stored against the key
//   6        2          max_chunk_size, in bytes
//   8        2          length of <root>.key, in units of 2 bytes
//   10       2          number of chunks
//   12       variable   a record for each chunk: 2 bytes offset in <root>.key, in
//                       units of 2 bytes; 1 byte letter count of its first key; the
//                       letters
//   behind   52         lc_table: for each first letter a to z 2 bytes, its first
//                       chunk. A letter without keys has the value of the next one
//                       that has some; those behind the last in use have 0.
//
// <root>.key: chunks, each padded to an even length with a zero byte. An entry:
//
//   part          bytes     content
//   key map       1         letters shared with the key before, and letters in all,
//                           coded as in KdChunk.h
//   data map      1         255 for no data; else the same for the data, with the
//                           letters that they share with the entry's own key
//   key letters   the rest  those that are not shared
//   data letters  the rest  those that are not shared, at least one
//
// Chunks begin where those of other key files do (see KdChunkCreator.h), and as
// there the last one holds the last entry alone.
#pragma once

#include <array>
#include <fstream>
#include <memory>

#include "KeyFile.h"

namespace vandrelle {

// What writer and readers of the kind share.
constexpr int kKdStopMaxKey = 21;
constexpr int kKdStopMaxData = 22;
constexpr int kKdStopLetters = 26;
constexpr unsigned char kKdStopNoData = 255;
constexpr int kKdStopHeaderBytes = 12;
constexpr int kKdStopTableBytes = 2 * kKdStopLetters;

// 0 to 25 for a to z and A to Z, -1 for a word that begins with anything else.
int KdStopLetter(const WmWord* word);

class KdStopCreator : public KdFileCreator {
 public:
  // `file_name` is the root name. `max_chunk_size` in bytes; `data_size` is not
  // looked at. Throws _Exception_KdInit for a chunk size that holds no entry or
  // does not fit its field, and _Exception_IO for a null name and if a file cannot
  // be made.
  KdStopCreator(const char* file_name, int max_chunk_size, int data_size, int type);
  // Completes the files. Throws _Exception_IO. Unlike other kinds' files these
  // cannot be read before.
  ~KdStopCreator() override;

  // `data` is a WmWord, or null for none; the empty word counts as none. `size` is
  // not looked at. A key that is not greater than its predecessor is dropped, and
  // a line on the standard output says so. Throws _Exception_KdWordTooBig for more
  // than kKdStopMaxKey or kKdStopMaxData letters, and _Exception_KdInit for a key
  // that does not begin with a letter and for an entry that fits no chunk.
  void Add_Entry(const WmWord* key, const void* data, int32 size) override;
  void Add_Entry(const char* key, const void* data, int32 size) override;

 private:
  void Add_Entry_To_Buffer(const WmWord* key, const WmWord* data);
  bool Overflow(const WmWord* key, const WmWord* data) const;
  void Write_To_Pointer_File(const WmWord* key);
  void Write_Chunk_To_Disk();
  void Separate_Last_Entry();
  void Finish_Pointer_File();

  std::fstream key_file_;
  std::fstream ptr_file_;
  const std::int16_t lz_data_ = 1;
  std::int16_t max_chunk_size_;
  int32 keyfile_pos_ = 0;  // of the chunk that is being built, in units of 2 bytes
  std::uint16_t num_chunks_ = 0;
  int next_letter_ = 0;  // the first without an entry in lc_table_
  std::array<std::uint16_t, kKdStopLetters> lc_table_{};
  std::unique_ptr<unsigned char[]> chunk_buf_;
  int chunk_bytes_ = 0;
  int entry_size_ = 0;
  int in_ptr_file_ = 1;  // the latest key is the first of its chunk, or there is none
  WmLocalWord prev_key_;
  WmLocalWord prev_data_;
};

}  // namespace vandrelle
