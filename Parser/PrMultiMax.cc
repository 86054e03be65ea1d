#include "Parser/PrMultiMax.h"

namespace vandrelle {

PrMultiMax::PrMultiMax(int numChildren, int numScores, float minScore, int numDocuments)
    : PrMultiBaseNode(numChildren),
      nodeimpl_(numScores),
      minScore_(minScore),
      numDocuments_(numDocuments) {}

int PrMultiMax::next(int* doc, float* score) {
  if (!visited_) visitChildren();
  nodeimpl_.sort();  // an add() since the last call has undone the order
  return nodeimpl_.next(doc, score);
}

void PrMultiMax::visitChildren() {
  visited_ = true;
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (children_[i] == nullptr) continue;
    children_[i]->forEach([this, weight = childWeights_[i]](int doc, float value) {
      if (doc >= numDocuments_) return false;
      const float weighted = value * weight;
      if (weighted >= minScore_ && weighted > 0) nodeimpl_.add(doc, weighted);
      return true;
    });
  }
}

}  // namespace vandrelle
