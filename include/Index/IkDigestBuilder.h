// The digests of a range of documents while the rows are read: the inner loop of
// stage 3.
//
// A word goes in place of the first entry with the lowest value, if that is
// below the word's. To find that entry without a scan, each document has a
// binary heap of (value, place) pairs: its top is the entry to be replaced, and
// most words are turned away by one look at it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vandrelle {

class IkDigestBuilder {
 public:
  static constexpr int kMaxDigestSize = 65535;

  // Empty digests of `digestSize` entries for `numDocs` documents.
  IkDigestBuilder(int numDocs, int digestSize);

  // `doc` counts from the start of the range and is below `numDocs`.
  void insert(int doc, int wordnum, std::uint16_t value) {
    const std::size_t document = static_cast<std::size_t>(doc);
    if (value <= lowest_[document]) return;
    replaceLowest(document, wordnum, value);
  }

  // Writes the digest, sorted by word, as digestSize entries of 6 bytes.
  void store(int doc, unsigned char* place) const;

 private:
  void replaceLowest(std::size_t doc, int wordnum, std::uint16_t value);

  std::size_t digestSize_;
  std::vector<std::uint16_t> lowest_;  // by document: the value on top of its heap
  // By document: digestSize keys, the value above the entry's place, a min-heap.
  // Equal values are thus ordered by place.
  std::vector<std::uint32_t> heaps_;
  std::vector<std::int32_t> words_;  // by document and place
};

}  // namespace vandrelle
