// A hash table from 32-bit keys to 32-bit data, for many small entries: a bucket is
// a chain of groups of up to 7 entries, one allocation a group (72 bytes, of which
// the pointer to the next group takes 8).
//
// Equal keys are kept side by side. The number of buckets never changes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vandrelle {

using FdFastTableEntry = std::uint32_t;

struct FdFastTableGroup {
  static constexpr int kEntries = 7;
  struct Entry {
    FdFastTableEntry key;
    FdFastTableEntry data;
  };

  FdFastTableGroup* next;
  std::uint8_t count;
  Entry entries[kEntries];
};

class FdFastTable {
 public:
  // The buckets are the smallest power of two that is not below `size`.
  explicit FdFastTable(int size)
      : tableSize_(size > 1 ? static_cast<int>(std::bit_ceil(static_cast<unsigned>(size))) : 1),
        tableMask_(tableSize_ - 1),
        tableMaskBits_(std::bit_width(static_cast<unsigned>(tableMask_))),
        entries_(static_cast<std::size_t>(tableSize_)) {}
  ~FdFastTable() {
    for (FdFastTableGroup* group : entries_) {
      while (group != nullptr) {
        FdFastTableGroup* next = group->next;
        delete group;
        group = next;
      }
    }
  }
  FdFastTable(const FdFastTable&) = delete;
  FdFastTable& operator=(const FdFastTable&) = delete;

  // Adds an entry without looking for the key.
  void insert(FdFastTableEntry key, FdFastTableEntry data) {
    FdFastTableGroup*& head = entries_[bucketOf(key)];
    if (head == nullptr || head->count == FdFastTableGroup::kEntries) {
      auto* group = new FdFastTableGroup;
      group->next = head;
      group->count = 0;
      head = group;
    }
    head->entries[head->count++] = {key, data};
  }

  // The first entry with the key: the group added last is looked at first, and
  // within a group the oldest entry. False if there is none; `data` may be null.
  bool find(FdFastTableEntry key, FdFastTableEntry* data) const {
    const FdFastTableEntry* found = dataPointer(key);
    if (found != nullptr && data != nullptr) *data = *found;
    return found != nullptr;
  }

  // As find(), and takes the entry out.
  bool remove(FdFastTableEntry key, FdFastTableEntry* data) {
    for (FdFastTableGroup** link = &entries_[bucketOf(key)]; *link != nullptr;
         link = &(*link)->next) {
      FdFastTableGroup* group = *link;
      for (int i = 0; i < group->count; ++i) {
        if (group->entries[i].key != key) continue;
        if (data != nullptr) *data = group->entries[i].data;
        group->entries[i] = group->entries[--group->count];
        if (group->count == 0) {
          *link = group->next;
          delete group;
        }
        return true;
      }
    }
    return false;
  }

  // The data in place, or null. Good until an entry of the bucket is removed.
  FdFastTableEntry* dataPointer(FdFastTableEntry key) const {
    for (FdFastTableGroup* group = entries_[bucketOf(key)]; group != nullptr; group = group->next) {
      for (int i = 0; i < group->count; ++i) {
        if (group->entries[i].key == key) return &group->entries[i].data;
      }
    }
    return nullptr;
  }

  int numBuckets() const { return tableSize_; }
  // The first group of a bucket, or null.
  const FdFastTableGroup* bucket(int number) const {
    return entries_[static_cast<std::size_t>(number)];
  }

 private:
  std::size_t bucketOf(FdFastTableEntry key) const {
    if (tableMaskBits_ == 0) return 0;
    const FdFastTableEntry mixed = key ^ (key >> 2);
    FdFastTableEntry hashed = 0;
    for (int shift = 0; shift < 32; shift += tableMaskBits_) hashed ^= mixed >> shift;
    return hashed & static_cast<FdFastTableEntry>(tableMask_);
  }

  int tableSize_;
  int tableMask_;
  int tableMaskBits_;
  std::vector<FdFastTableGroup*> entries_;
};

}  // namespace vandrelle
