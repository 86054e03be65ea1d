// A set of documents with one score for all.
#pragma once

#include <cstdint>
#include <vector>

#include "Parser/PrLastAnswer.h"
#include "Parser/PrParserNode.h"

namespace vandrelle {

class PrBitVector final : public PrParserNode {
 public:
  // For documents 0 to `size` - 1.
  explicit PrBitVector(int size, float score = 1.0f);

  int next(int* doc, float* score) override;

  // A document out of range is not taken.
  void add(int doc) { set(doc); }
  void set(int doc);
  // From `first` to `last`, both included; none if `last` is below `first`.
  void addRange(int first, int last);
  // Does the set hold the document? False out of range.
  bool get(int doc) const;

  int size() const { return size_; }
  using PrParserNode::score;

 private:
  int search(int* doc, float* score) const;

  std::vector<std::uint64_t> bits_;
  int size_;
  float score_;
  PrLastAnswer lastAnswer_;
};

}  // namespace vandrelle
