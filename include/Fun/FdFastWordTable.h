// A hash table from words to one machine word of data, a number or a pointer: the
// table behind stop lists and term accumulation, where every word of the text is
// looked up.
//
// A bucket is a chain of groups of up to 10 entries, taken from a pool. A group
// keeps its hashes in the cache line of its link, so a chain is walked over hashes,
// and a word is compared only where its hash is equal. Words are read as raw bytes
// (length, then letters); they are not owned and must outlive their entries. Equal
// words are kept side by side, and the number of buckets never changes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Fun/FdAllocator.h"

namespace vandrelle {

class WmWord;

// 216 bytes on a machine with 8-byte pointers, the first 56 of which the search
// reads.
struct FdFastWordTableGroup {
  static constexpr int kEntries = 10;
  struct Entry {
    const WmWord* word;
    std::uintptr_t data;
  };

  FdFastWordTableGroup* next;
  std::uint8_t count;
  std::uint32_t hashes[kEntries];
  Entry entries[kEntries];
};

class FdFastWordTable {
 public:
  using Data = std::uintptr_t;

  // The buckets are the smallest power of two that is not below `size`.
  explicit FdFastWordTable(int size)
      : tableSize_(size > 1 ? static_cast<int>(std::bit_ceil(static_cast<unsigned>(size))) : 1),
        tableMask_(tableSize_ - 1),
        tableMaskBits_(std::bit_width(static_cast<unsigned>(tableMask_))),
        entries_(static_cast<std::size_t>(tableSize_)),
        groups_(static_cast<int>(sizeof(FdFastWordTableGroup))) {
    groups_.chunksize(64);
  }
  FdFastWordTable(const FdFastWordTable&) = delete;
  FdFastWordTable& operator=(const FdFastWordTable&) = delete;

  // Adds an entry without looking for the word.
  void insert(const WmWord* word, Data data) { insert(word, hash(word), data); }

  // The first entry with the word: the group added last is looked at first, and
  // within a group the oldest entry. False if there is none; `data` may be null.
  bool find(const WmWord* word, Data* data) const {
    const Data* found = dataPointer(word);
    if (found != nullptr && data != nullptr) *data = *found;
    return found != nullptr;
  }

  // As find(), and takes the entry out.
  bool remove(const WmWord* word, Data* data);

  // The data in place, or null. Good until an entry of the bucket is removed.
  Data* dataPointer(const WmWord* word) const { return dataPointer(word, hash(word)); }

  // The same with the word's hash at hand, for a caller that looks up and inserts. A
  // caller that does all its own hashing may pass any function of the word, such as
  // spread(hash(word)).
  Data* dataPointer(const WmWord* word, std::uint32_t hashed) const {
    for (FdFastWordTableGroup* group = entries_[bucketOf(hashed)]; group != nullptr;
         group = group->next) {
      for (int i = 0; i < group->count; ++i) {
        if (group->hashes[i] == hashed && equal(group->entries[i].word, word)) {
          return &group->entries[i].data;
        }
      }
    }
    return nullptr;
  }
  void insert(const WmWord* word, std::uint32_t hashed, Data data) {
    FdFastWordTableGroup*& head = entries_[bucketOf(hashed)];
    if (head == nullptr || head->count == FdFastWordTableGroup::kEntries) {
      auto* group = static_cast<FdFastWordTableGroup*>(groups_.allocate());
      group->next = head;
      group->count = 0;
      head = group;
    }
    head->hashes[head->count] = hashed;
    head->entries[head->count] = {word, data};
    ++head->count;
  }

  // Takes all entries out and frees their memory.
  void removeAll() {
    entries_.assign(entries_.size(), nullptr);
    groups_.deallocateAll();
  }

  int numBuckets() const { return tableSize_; }
  // The first group of a bucket, or null.
  const FdFastWordTableGroup* bucket(int number) const {
    return entries_[static_cast<std::size_t>(number)];
  }

  // Five bits of each letter, XORed into place from the low bits up; 0 for an empty
  // word.
  static std::uint32_t hash(const WmWord* word) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(word);
    const int length = bytes[0];
    const unsigned char* letters = bytes + 1;
    if (std::endian::native == std::endian::little && length <= 2 * kLettersInPlace) {
      if (length <= kLettersInPlace) return hashRun(letters, length);
      return hashRun(letters, kLettersInPlace) ^
             hashRun(letters + kLettersInPlace, length - kLettersInPlace);
    }
    return hashByLetter(letters, length);
  }

  // The low bits of a hash are the first letters, so words that begin alike share a
  // bucket. This makes them depend on all bits (Knuth's multiplicative hashing, "The
  // Art of Computer Programming" 6.4); a table of a text's vocabulary answers in two
  // thirds of the time with it.
  static std::uint32_t spread(std::uint32_t hashed) {
    const std::uint32_t product = hashed * 0x9e3779b1u;
    return product ^ product >> 16;
  }

  // The same letter by letter, as it is defined: when the shift leaves the 32 bits
  // it starts anew from 0, then from 1, 2, 3, 4, 0...
  static std::uint32_t hashByLetter(const unsigned char* letters, int length) {
    std::uint32_t hashed = 0;
    int shift = 0;
    int restarts = 0;
    for (int i = 0; i < length; ++i) {
      hashed ^= static_cast<std::uint32_t>((letters[i] - 'a') & 31) << shift;
      shift += 5;
      if (shift >= 32) shift = restarts++ % 5;
    }
    return hashed;
  }

  static bool equal(const WmWord* word1, const WmWord* word2) {
    const auto* bytes1 = reinterpret_cast<const unsigned char*>(word1);
    const auto* bytes2 = reinterpret_cast<const unsigned char*>(word2);
    return bytes1[0] == bytes2[0] && std::memcmp(bytes1 + 1, bytes2 + 1, bytes1[0]) == 0;
  }

 private:
  // Letters until the shift leaves 32 bits. The first restart is from 0 again, so
  // two runs cover most words.
  static constexpr int kLettersInPlace = 7;

  // The hash of up to 7 letters from shift 0, all letters at once. Reads no byte
  // beyond them.
  static std::uint32_t hashRun(const unsigned char* letters, int length) {
    std::uint64_t bytes;
    if (length >= 4) {
      std::uint32_t low;
      std::uint32_t high;
      std::memcpy(&low, letters, 4);
      std::memcpy(&high, letters + length - 4, 4);
      bytes = low | static_cast<std::uint64_t>(high) << ((length - 4) * 8);
    } else if (length > 0) {
      const int middle = length / 2;
      bytes = letters[0] | static_cast<std::uint64_t>(letters[middle]) << (middle * 8) |
              static_cast<std::uint64_t>(letters[length - 1]) << ((length - 1) * 8);
    } else {
      return 0;
    }
    // 'a' is 1 modulo 32, so each byte less 'a' is the byte plus 31.
    bytes = (bytes & 0x1f1f1f1f1f1f1f1f) + 0x1f1f1f1f1f1f1f1f;
    bytes &= 0x1f1f1f1f1f1f1f1f & ((std::uint64_t{1} << (length * 8)) - 1);
    bytes = (bytes & 0x001f001f001f001f) | (bytes & 0x1f001f001f001f00) >> 3;
    bytes = (bytes & 0x000003ff000003ff) | (bytes & 0x03ff000003ff0000) >> 6;
    return static_cast<std::uint32_t>((bytes & 0xfffff) | bytes >> 32 << 20);
  }

  std::size_t bucketOf(std::uint32_t hashed) const {
    return hashed & static_cast<std::uint32_t>(tableMask_);
  }

  int tableSize_;
  int tableMask_;
  int tableMaskBits_;
  std::vector<FdFastWordTableGroup*> entries_;
  FdAllocator groups_;
};

inline bool FdFastWordTable::remove(const WmWord* word, Data* data) {
  const std::uint32_t hashed = hash(word);
  for (FdFastWordTableGroup** link = &entries_[bucketOf(hashed)]; *link != nullptr;
       link = &(*link)->next) {
    FdFastWordTableGroup* group = *link;
    for (int i = 0; i < group->count; ++i) {
      if (group->hashes[i] != hashed || !equal(group->entries[i].word, word)) continue;
      if (data != nullptr) *data = group->entries[i].data;
      --group->count;
      group->hashes[i] = group->hashes[group->count];
      group->entries[i] = group->entries[group->count];
      if (group->count == 0) {
        *link = group->next;
        groups_.deallocate(group);
      }
      return true;
    }
  }
  return false;
}

}  // namespace vandrelle
