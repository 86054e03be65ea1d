// The unstemming table: a hash table on disk from a stem to the words of the
// index with that stem, chained in blocks.
//
// File <root>.unstem, low byte first in all integers:
//
//   offset                size
//   0                        4  buckets
//   4                        4  block size, bytes
//   8                      120  zeros
//   128 + b * block size         block b
//
// Blocks 0 to buckets - 1 are the heads of the buckets; overflow blocks follow in
// the order in which they were needed. A block:
//
//   0       4  bytes in use, from the start of the block; 8 in an empty block, 0
//              in one that was never used
//   4       4  number of the next block of the chain, -1 at its end
//   8          entries: the stem, then the word, both in storage form
//
// Nothing is written behind the last block that was used.
#pragma once

#include <iosfwd>
#include <vector>

#include "Fast/FiFile.h"
#include "Fun/FdVector.h"
#include "MagicWord.h"
#include "Tool/ByteOrder.h"
#include "Word.h"

namespace vandrelle {

class FiStemTable {
 public:
  FiStemTable() = default;
  ~FiStemTable();
  FiStemTable(const FiStemTable&) = delete;
  FiStemTable& operator=(const FiStemTable&) = delete;

  // Before bind(), for a table to be written.
  void buckets(int buckets) { buckets_ = buckets; }
  void blocksize(int bytes) { blocksize_ = bytes; }

  // Opens `filename`: for writing from scratch (`wr`; the file must not exist or
  // be empty), through a map (`map`), or for reading. Throws _Exception_Fatal, also
  // for a header that can't be right.
  void bind(const char* filename, int wr, int map);

  // Adds a word under its stem, at the end of the first block of the chain that
  // has room. `startblock` -1 means the stem's bucket. Nothing on a table that
  // isn't written.
  void insert(const WmWord& word, const WmWord& unstemmed, int startblock);

  // Writes what insert() has gathered, as does the destructor. Throws
  // _Exception_Fatal.
  void flush();

  // Appends the words of a stem to `result`, in order of insertion. A damaged
  // chain ends the search.
  void find(const WmWord& word, FdVector<WmMagicWord>& result);

  // Diagnostics: the bucket of a stem; a line per bucket.
  void dump(const WmWord& word, std::ostream& os);
  void statdump(std::ostream& os);

  static uint32 hash(const WmWord& word);
  // `sigbits` 0: the bit length of `buckets`.
  static int bucket(uint32 h, int buckets, int sigbits);
  int bucket(uint32 h) const { return bucket(h, buckets_, bucketbits_); }
  int bucket(const WmWord& word) const { return bucket(hash(word)); }

 private:
  // A chain while it is written. Rereading it for every word would cost a walk
  // per insertion; since blocks only fill up, the first block with room for an
  // entry of some size never moves back along the chain.
  struct Chain {
    std::vector<int> blocks;
    std::vector<std::uint32_t> firstWithRoom;  // by entry size: place in `blocks`
  };

  bool validblock(int block) const;
  FiFileSegment block(int block);
  FiFileSegment& writeBlock(int block);
  // The number of the block that takes an entry of `size` bytes.
  int placeEntry(int startblock, int size);
  void readHeader(const char* filename);
  void writeHeader();
  void setbucketbits();
  // Calls take(number, bytes, used) for each block of the chain at `first` that
  // can be read, until it answers false or the chain ends.
  template <typename Take>
  void eachBlock(int first, Take take);

  FiFile file_;
  int headersize_ = 128;
  int blocksize_ = 512;
  int buckets_ = 0;
  int bucketbits_ = 0;
  int numblocks_ = 0;
  std::vector<Chain> chains_;          // by start block
  std::vector<FiFileSegment> blocks_;  // being written, by number
};

}  // namespace vandrelle
