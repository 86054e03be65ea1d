// What the readers of stop-style key files share: the pointer file in memory and
// the entries of a chunk (layout: KdStopCreator.h). Everything that a file says is
// checked: the pointer file when it is read, a chunk when it is loaded, its entries
// while it is walked.
#pragma once

#include <array>
#include <vector>

#include "KeyFile/KdStopCreator.h"

namespace vandrelle {

// A pointer record.
struct sf_ptr_entry {
  int32 offset;  // of the chunk, in bytes
  WmLocalWord word;
};

// An entry of a chunk, in place.
struct KdStopEntry {
  int key_common, key_rest;
  int data_common, data_rest;  // nothing rests where there are no data
  const unsigned char* key_letters;
  const unsigned char* data_letters;
  int next;  // offset behind the entry

  // The data of the entry, whose key is `key`, built in `to`, which has room for
  // kKdStopMaxData letters; the empty word if there are none.
  void buildData(const WmWord* key, WmWord* to) const;
};

// Takes the entry at `offset` apart; false if no whole entry stands there.
bool KdReadStopEntry(const unsigned char* chunk, int chunk_bytes, int offset, KdStopEntry* entry);

// Is nothing but padding left from `offset` on?
bool KdStopChunkEnds(const unsigned char* chunk, int chunk_bytes, int offset);

// The pointer file in memory, and the chunks it leads to.
class KdStopTable {
 public:
  // Takes the bytes of a whole pointer file, which need not stay. Returns null or
  // what is wrong with them, given a key file of `keyfile_bytes`.
  const char* read(const unsigned char* from, std::size_t bytes, int64_t keyfile_bytes);

  int count() const { return static_cast<int>(records_.size()); }
  const WmWord* word(int chunk) const {
    return records_[static_cast<std::size_t>(chunk)].word.word();
  }
  int maxChunkBytes() const { return max_chunk_bytes_; }

  // The chunk that holds a key if any does, -1 if none can.
  int findChunk(const WmWord* key) const;

  // Reads a chunk into `buffer` of maxChunkBytes(); its size in bytes, or -1 if it
  // cannot be read or does not begin with the word of its record.
  int load(FILE_DES key_file, int chunk, unsigned char* buffer) const;

 private:
  const char* readRecords(const unsigned char* from, std::size_t bytes, int count);
  int chunkBytes(int chunk) const;

  int32 keyfile_bytes_ = 0;
  int max_chunk_bytes_ = 0;
  std::vector<sf_ptr_entry> records_;
  std::array<std::uint16_t, kKdStopLetters> lc_table_{};
};

}  // namespace vandrelle
