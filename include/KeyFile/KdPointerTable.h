// The pointer records of a key file in the form in which mapped files have them:
// a table of 12-byte records and an area of words (see KdMmapCreator.h), either
// in a mapping or, converted, in memory. All values are checked when the table is
// set, so that lookups need not.
#pragma once

#include "KeyFile/KdChunk.h"

namespace vandrelle {

// The 20 bytes at the beginning of every pointer file.
struct KdHeader {
  static constexpr int32 kBytes = 20;
  static constexpr int32 kCounters = 12;  // offset of the last two, 0 in an unfinished table
  int32 type = 0;
  int32 chunk_size = 0;
  int32 data_size = 0;
  int32 total_bytes = 0;
  int32 num_chunks = 0;

  static KdHeader load(const unsigned char* from);
  void store(unsigned char* to) const;
};

class KdPointerTable {
 public:
  static constexpr int32 kRecordBytes = 12;

  // Takes `header.num_chunks` records and `word_bytes` bytes of words; nothing is
  // copied. Returns null, or what is wrong with them, given a key file that is
  // `keyfile_bytes` long.
  const char* set(const KdHeader& header, const unsigned char* records, const unsigned char* words,
                  int64_t word_bytes, int64_t keyfile_bytes);

  int32 count() const { return count_; }
  int32 total_bytes() const { return total_bytes_; }
  int32 max_chunk_bytes() const { return max_chunk_bytes_; }

  // Of chunk `i`: its place in the key file, and its first word with its number.
  int32 offset(int32 i) const { return loadS32(record(i)); }
  int32 chunk_bytes(int32 i) const {
    return (i + 1 < count_ ? offset(i + 1) : total_bytes_) - offset(i);
  }
  const WmWord* word(int32 i) const {
    return reinterpret_cast<const WmWord*>(words_ + loadS32(record(i) + 4));
  }
  int32 number(int32 i) const { return loadS32(record(i) + 8); }
  int32 num_words() const { return count_ == 0 ? 0 : number(count_ - 1) + 1; }

  // The chunk that holds a word if any does, -1 if none can; `*in_ptr_file` tells
  // that the word is its first.
  int32 Find_Chunk(const WmWord* search_word, bool* in_ptr_file) const;
  // The chunk that holds the word of a number, -1 if there is none.
  int32 Find_Chunk_NL(int32 word_num) const;

 private:
  const unsigned char* record(int32 i) const { return records_ + std::ptrdiff_t{kRecordBytes} * i; }
  const char* check(int32 chunk_size, int64_t word_bytes);

  const unsigned char* records_ = nullptr;
  const unsigned char* words_ = nullptr;
  int32 count_ = 0;
  int32 total_bytes_ = 0;
  int32 max_chunk_bytes_ = 0;
};

}  // namespace vandrelle
