#include "Index/IkDigestBuilder.h"

#include <algorithm>

#include "Tool/ByteOrder.h"

namespace vandrelle {

IkDigestBuilder::IkDigestBuilder(int numDocs, int digestSize)
    : digestSize_(static_cast<std::size_t>(digestSize)),
      lowest_(static_cast<std::size_t>(numDocs)),
      heaps_(lowest_.size() * digestSize_),
      words_(lowest_.size() * digestSize_) {
  for (std::size_t i = 0; i < heaps_.size(); ++i) {
    heaps_[i] = static_cast<std::uint32_t>(i % digestSize_);
  }
}

void IkDigestBuilder::replaceLowest(std::size_t doc, int wordnum, std::uint16_t value) {
  std::uint32_t* heap = &heaps_[doc * digestSize_];
  const std::uint32_t place = heap[0] & 0xFFFF;
  words_[doc * digestSize_ + place] = wordnum;
  const std::uint32_t key = std::uint32_t{value} << 16 | place;
  std::size_t hole = 0;
  for (;;) {
    std::size_t child = 2 * hole + 1;
    if (child >= digestSize_) break;
    if (child + 1 < digestSize_ && heap[child + 1] < heap[child]) ++child;
    if (heap[child] > key) break;
    heap[hole] = heap[child];
    hole = child;
  }
  heap[hole] = key;
  lowest_[doc] = static_cast<std::uint16_t>(heap[0] >> 16);
}

void IkDigestBuilder::store(int doc, unsigned char* place) const {
  const std::size_t first = static_cast<std::size_t>(doc) * digestSize_;
  std::vector<std::uint64_t> entries(digestSize_);
  for (std::size_t i = 0; i < digestSize_; ++i) {
    const std::uint32_t key = heaps_[first + i];
    const std::uint32_t word = static_cast<std::uint32_t>(words_[first + (key & 0xFFFF)]);
    entries[i] = std::uint64_t{word} << 16 | key >> 16;
  }
  std::sort(entries.begin(), entries.end());
  for (const std::uint64_t entry : entries) {
    storeU32(place, static_cast<std::uint32_t>(entry >> 16));
    storeU16(place + 4, static_cast<std::uint16_t>(entry));
    place += 6;
  }
}

}  // namespace vandrelle
