// Receives the pairs of a word's row and gives the word's weight to the digests
// of the documents in a range.
#pragma once

#include "Index/IkDataFileUnpacker.h"
#include "Index/IkDigestBuilder.h"

namespace vandrelle {

class IkDataFileTransposeUnpacker final : public IkDataFileUnpacker {
 public:
  // Documents `rangeStart` to `rangeEnd` go to `digests`, numbered from the start
  // of the range. `sum` has an entry for each of them. Nothing is owned.
  IkDataFileTransposeUnpacker(int rangeStart, int rangeEnd, IkDigestBuilder* digests,
                              const float* sum)
      : range_start_(rangeStart), range_end_(rangeEnd), digests_(digests), sum_(sum) {}

  void wordnum(int number) { wordnum_ = number; }

  void action(int doc_num, int doc_freq, float idf) override {
    // A range that ends with document 0 takes nothing: an index of one document
    // has an empty digest, and readers know it so.
    if (doc_num < range_start_ || doc_num > range_end_ || range_end_ <= 0) return;
    const float score = static_cast<float>(doc_freq) * idf / sum_[doc_num];
    const double value = static_cast<double>(score) * 65535.0;
    // A damaged sum can make anything of the score; what isn't a number or too
    // large for an entry never came from a builder.
    if (!(value >= 0 && value < 65536)) return;
    digests_->insert(doc_num - range_start_, wordnum_, static_cast<std::uint16_t>(value));
  }

 private:
  int wordnum_ = 0;
  int range_start_;
  int range_end_;
  IkDigestBuilder* digests_;
  const float* sum_;
};

}  // namespace vandrelle
