// Raises or lowers the scores of the documents that a second node holds too.
#pragma once

#include <memory>

#include "Parser/PrParserNode.h"

namespace vandrelle {

class PrAugmentNode final : public PrParserNode {
 public:
  // Takes over `target`, whose documents are answered, and `match`, which may be
  // null: then every score is multiplied by `scale`. Otherwise only the scores
  // of documents in `match` are, with `useMatchWeights` by their score in it
  // too. `scaleAll` takes all documents, without end, at score 1.0 in the place
  // of `target`.
  PrAugmentNode(PrParserNode* target, PrParserNode* match, float scale, bool useMatchWeights,
                bool scaleAll)
      : target_(target),
        match_(match),
        scale_(scale),
        useMatchWeights_(useMatchWeights),
        scaleAll_(scaleAll) {}
  int next(int* doc, float* score) override;

 private:
  void scaleByMatch(int doc, float* score);

  std::unique_ptr<PrParserNode> target_;
  std::unique_ptr<PrParserNode> match_;
  float scale_;
  bool useMatchWeights_;
  bool scaleAll_;
};

}  // namespace vandrelle
