#include "Parser/PrAugmentNode.h"

namespace vandrelle {

int PrAugmentNode::next(int* doc, float* score) {
  if (scaleAll_) {
    *score = 1.0f;
  } else if (target_ == nullptr || !target_->next(doc, score)) {
    return 0;
  }
  scaleByMatch(*doc, score);
  return 1;
}

void PrAugmentNode::scaleByMatch(int doc, float* score) {
  if (match_ == nullptr) {
    *score *= scale_;
    return;
  }
  int found = doc;
  float matchScore = 0;
  if (!match_->next(&found, &matchScore) || found != doc) return;
  *score *= scale_;
  if (useMatchWeights_) *score *= matchScore;
}

}  // namespace vandrelle
