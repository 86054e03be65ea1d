// The in-memory table of the term accumulator: every distinct word of the
// current run with the chunks that hold it. IkIndexer fills it term by term and
// writes it out, sorted, as one temporary file.
//
// This is one of the system's hot loops. A term costs one hash, one probe of a
// dense slot array and, for a word seen before, a step in the word's entry. An
// entry is one cache line that holds the word itself, if short, and the pair
// that is still being counted; finished pairs are kept in the form that the
// temporary file has, so that writing them out is a copy. A caller that knows
// the next words early can start their memory accesses early.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "Word.h"

namespace vandrelle {

// Memory that is only ever given back as a whole. Blocks of a power of two can
// be returned one by one and are handed out again.
class IkTermArena {
 public:
  // Bytes that stay good until clear(). At most kChunkBytes.
  unsigned char* bytes(std::size_t size);

  // A block of 1 << `power` bytes, 4 <= power; larger ones than a chunk come
  // from the heap.
  unsigned char* block(unsigned power);
  void returnBlock(unsigned char* block, unsigned power);

  // Takes everything back and keeps the chunks for the next run.
  void clear();

 private:
  static constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
  static constexpr unsigned kMaxPower = 48;

  std::vector<std::unique_ptr<unsigned char[]>> chunks_;
  std::vector<std::unique_ptr<unsigned char[]>> large_;
  std::size_t usedChunks_ = 0;
  unsigned char* next_ = nullptr;
  unsigned char* end_ = nullptr;
  unsigned char* free_[kMaxPower] = {};
};

// One word and its chunks in rising order.
struct alignas(64) IkIndexerTableEntry {
  static constexpr std::size_t kInlineWord = 32;

  std::int32_t chunk;         // the chunk being counted, -1 before the first term
  std::int32_t count;         // its occurrences so far
  unsigned char* records;     // finished pairs as chunk records, see IkTempfile.h
  std::uint32_t recordBytes;  // bytes used in `records`
  std::uint32_t numPairs;     // finished pairs
  std::uint8_t recordPower;   // `records` has room for 1 << recordPower; 0: none
  std::uint8_t tooFrequent;   // some pair reached IkTempfile's largest count
  std::uint32_t number;       // in order of arrival, from 0
  union {
    // The word in storage form (length byte, letters), inline if it fits.
    unsigned char shortWord[kInlineWord];
    struct {
      unsigned char marker;          // kLongWord, a length no short word has
      const unsigned char* letters;  // in the arena, storage form
    } longWord;
  };

  static constexpr unsigned char kLongWord = 0xFF;
  const unsigned char* wordBytes() const {
    return shortWord[0] == kLongWord ? longWord.letters : shortWord;
  }
  const WmWord* word() const { return reinterpret_cast<const WmWord*>(wordBytes()); }
};

static_assert(sizeof(IkIndexerTableEntry) == 64);

class IkTermTable {
 public:
  IkTermTable();
  IkTermTable(const IkTermTable&) = delete;
  IkTermTable& operator=(const IkTermTable&) = delete;

  // Over the length byte and the letters; multiply-and-fold of eight bytes at a
  // time, the tail read as overlapping words.
  static std::uint32_t hash(const WmWord* word) {
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15u;
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(word);
    const std::size_t length = std::size_t{bytes[0]} + 1;
    std::uint64_t hash = length * 0xC2B2AE3D27D4EB4Fu;
    if (length >= 8) {
      const unsigned char* last = bytes + length - 8;
      for (; bytes < last; bytes += 8) {
        hash = (hash ^ load64(bytes)) * kMultiplier;
        hash ^= hash >> 29;
      }
      hash = (hash ^ load64(last)) * kMultiplier;
    } else if (length >= 4) {
      const std::uint64_t both = std::uint64_t{load32(bytes)} << 32 | load32(bytes + length - 4);
      hash = (hash ^ both) * kMultiplier;
    } else {
      std::uint64_t few = 0;
      for (std::size_t i = 0; i < length; ++i) few = few << 8 | bytes[i];
      hash = (hash ^ few) * kMultiplier;
    }
    return static_cast<std::uint32_t>(hash >> 32);
  }

  // The entry of `word`, whose hash() is `hash`, made with chunk -1 if it is new;
  // then `*added` is true. The reference is good until the next call of entry()
  // or clear().
  IkIndexerTableEntry& entry(const WmWord* word, std::uint32_t hash, bool* added) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(word);
    std::size_t slot = hash & mask_;
    for (;;) {
      const Slot& candidate = slots_[slot];
      if (candidate.entry == kNoEntry) break;
      if (candidate.hash == hash) {
        IkIndexerTableEntry& found = *entryAt(candidate.entry);
        if (sameWord(found.wordBytes(), bytes)) {
          *added = false;
          return found;
        }
      }
      slot = (slot + 1) & mask_;
    }
    *added = true;
    return insert(bytes, hash, slot);
  }

  // The two memory accesses of a coming entry(), started early: first the slot,
  // some time later, when that is at hand, the entry that it leads to.
  void prefetchSlot(std::uint32_t hash) const { __builtin_prefetch(&slots_[hash & mask_]); }
  void prefetchEntry(std::uint32_t hash) {
    const Slot& candidate = slots_[hash & mask_];
    if (candidate.entry != kNoEntry) __builtin_prefetch(entryAt(candidate.entry), 1);
  }

  // Moves the pair being counted to the finished ones.
  void finishPair(IkIndexerTableEntry& entry);

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  // All entries in the order of WmWord::cmp. Good until the next entry().
  std::vector<IkIndexerTableEntry*> sorted();

  void clear();

 private:
  struct Slot {
    std::uint32_t hash;
    std::uint32_t entry;
  };
  static constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;
  static constexpr std::size_t kEntriesPerBlock = 4096;

  static std::uint64_t load64(const unsigned char* from) {
    std::uint64_t value;
    __builtin_memcpy(&value, from, 8);
    return value;
  }
  static std::uint32_t load32(const unsigned char* from) {
    std::uint32_t value;
    __builtin_memcpy(&value, from, 4);
    return value;
  }

  static bool sameWord(const unsigned char* a, const unsigned char* b) {
    const std::size_t length = std::size_t{a[0]} + 1;
    if (a[0] != b[0]) return false;
    if (length < 8) {
      for (std::size_t i = 1; i < length; ++i) {
        if (a[i] != b[i]) return false;
      }
      return true;
    }
    const std::size_t last = length - 8;
    for (std::size_t i = 0; i < last; i += 8) {
      if (load64(a + i) != load64(b + i)) return false;
    }
    return load64(a + last) == load64(b + last);
  }

  IkIndexerTableEntry* entryAt(std::uint32_t number) {
    return &blocks_[number / kEntriesPerBlock][number % kEntriesPerBlock];
  }

  IkIndexerTableEntry& insert(const unsigned char* bytes, std::uint32_t hash, std::size_t slot);
  void grow();

  std::vector<Slot> slots_;
  std::size_t mask_;
  std::size_t size_ = 0;
  std::vector<std::unique_ptr<IkIndexerTableEntry[]>> blocks_;
  IkTermArena arena_;
};

}  // namespace vandrelle
