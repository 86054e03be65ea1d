#include "Index/IkTermTable.h"

#include <algorithm>
#include <cstring>

#include "Index/IkTempfile.h"
#include "Index/IkWordOrder.h"

namespace vandrelle {

unsigned char* IkTermArena::bytes(std::size_t size) {
  if (static_cast<std::size_t>(end_ - next_) < size) {
    if (usedChunks_ == chunks_.size()) {
      chunks_.push_back(std::make_unique_for_overwrite<unsigned char[]>(kChunkBytes));
    }
    next_ = chunks_[usedChunks_++].get();
    end_ = next_ + kChunkBytes;
  }
  unsigned char* taken = next_;
  next_ += size;
  return taken;
}

unsigned char* IkTermArena::block(unsigned power) {
  if (unsigned char* reused = free_[power]) {
    std::memcpy(&free_[power], reused, sizeof(unsigned char*));
    return reused;
  }
  const std::size_t size = std::size_t{1} << power;
  if (size <= kChunkBytes / 4) return bytes(size);
  large_.push_back(std::make_unique_for_overwrite<unsigned char[]>(size));
  return large_.back().get();
}

void IkTermArena::returnBlock(unsigned char* block, unsigned power) {
  std::memcpy(block, &free_[power], sizeof(unsigned char*));
  free_[power] = block;
}

void IkTermArena::clear() {
  large_.clear();
  std::fill(std::begin(free_), std::end(free_), nullptr);
  usedChunks_ = 0;
  next_ = end_ = nullptr;
}

namespace {

constexpr std::size_t kFirstSlots = std::size_t{1} << 10;
constexpr unsigned kFirstRecordPower = 4;

}  // namespace

IkTermTable::IkTermTable() : slots_(kFirstSlots, Slot{0, kNoEntry}), mask_(kFirstSlots - 1) {}

IkIndexerTableEntry& IkTermTable::insert(const unsigned char* bytes, std::uint32_t hash,
                                         std::size_t slot) {
  if (size_ * 2 >= slots_.size()) {
    grow();
    slot = hash & mask_;
    while (slots_[slot].entry != kNoEntry) slot = (slot + 1) & mask_;
  }
  if (size_ == blocks_.size() * kEntriesPerBlock) {
    blocks_.push_back(std::make_unique_for_overwrite<IkIndexerTableEntry[]>(kEntriesPerBlock));
  }
  const std::uint32_t number = static_cast<std::uint32_t>(size_++);
  slots_[slot] = Slot{hash, number};

  IkIndexerTableEntry& added = *entryAt(number);
  added.chunk = -1;
  added.count = 0;
  added.records = nullptr;
  added.recordBytes = 0;
  added.numPairs = 0;
  added.recordPower = 0;
  added.tooFrequent = 0;
  added.number = number;
  const std::size_t size = std::size_t{bytes[0]} + 1;
  if (size <= IkIndexerTableEntry::kInlineWord) {
    std::memcpy(added.shortWord, bytes, size);
  } else {
    unsigned char* copy = arena_.bytes(size);
    std::memcpy(copy, bytes, size);
    added.longWord.marker = IkIndexerTableEntry::kLongWord;
    added.longWord.letters = copy;
  }
  return added;
}

void IkTermTable::grow() {
  std::vector<Slot> old(slots_.size() * 2, Slot{0, kNoEntry});
  old.swap(slots_);
  mask_ = slots_.size() - 1;
  for (const Slot& moved : old) {
    if (moved.entry == kNoEntry) continue;
    std::size_t slot = moved.hash & mask_;
    while (slots_[slot].entry != kNoEntry) slot = (slot + 1) & mask_;
    slots_[slot] = moved;
  }
}

void IkTermTable::finishPair(IkIndexerTableEntry& entry) {
  const std::size_t capacity = entry.recordPower == 0 ? 0 : std::size_t{1} << entry.recordPower;
  if (entry.recordBytes + IkTempfile::kMaxRecordBytes > capacity) {
    const unsigned power = entry.recordPower == 0 ? kFirstRecordPower : entry.recordPower + 1u;
    unsigned char* larger = arena_.block(power);
    if (capacity != 0) {
      std::memcpy(larger, entry.records, entry.recordBytes);
      arena_.returnBlock(entry.records, entry.recordPower);
    }
    entry.records = larger;
    entry.recordPower = static_cast<std::uint8_t>(power);
  }
  int count = entry.count;
  if (count >= IkTempfile::kMaxCount) {
    count = IkTempfile::kMaxCount;
    entry.tooFrequent = 1;
  }
  entry.recordBytes += static_cast<std::uint32_t>(
      IkTempfile::encode(entry.records + entry.recordBytes, entry.chunk, count));
  ++entry.numPairs;
}

std::vector<IkIndexerTableEntry*> IkTermTable::sorted() {
  // The first eight letters, padded with zeros, decide most comparisons: as a
  // big-endian number they have the order of WmWord::cmp.
  struct Key {
    std::uint64_t prefix;
    IkIndexerTableEntry* entry;
  };
  std::vector<Key> keys;
  keys.reserve(size_);
  for (std::uint32_t i = 0; i < size_; ++i) {
    IkIndexerTableEntry* entry = entryAt(i);
    keys.push_back({wordPrefix(entry->word()), entry});
  }
  std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
    if (a.prefix != b.prefix) return a.prefix < b.prefix;
    return WmWord::cmp(a.entry->word(), b.entry->word()) < 0;
  });
  std::vector<IkIndexerTableEntry*> entries;
  entries.reserve(size_);
  for (const Key& key : keys) entries.push_back(key.entry);
  return entries;
}

void IkTermTable::clear() {
  std::fill(slots_.begin(), slots_.end(), Slot{0, kNoEntry});
  size_ = 0;
  arena_.clear();
}

}  // namespace vandrelle
