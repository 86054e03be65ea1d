#include "Parser/PrMultiNode.h"

#include <algorithm>

namespace vandrelle {

PrMultiBaseNode::PrMultiBaseNode(int numChildren)
    : numChildren_(std::max(numChildren, 0)),
      children_(static_cast<std::size_t>(numChildren_)),
      childWeights_(static_cast<std::size_t>(numChildren_), 1.0f) {}

void PrMultiBaseNode::child(int i, PrParserNode* node) {
  children_[checked(i)].reset(node);
  lastAnswer_.forget();
}

void PrMultiBaseNode::childWeight(int i, float weight) {
  childWeights_[checked(i)] = weight;
  lastAnswer_.forget();
}

void PrMultiBaseNode::normalize() {
  float sum = 0;
  for (const float weight : childWeights_) sum += weight;
  for (float& weight : childWeights_) weight /= sum;
  lastAnswer_.forget();
}

std::size_t PrMultiBaseNode::checked(int i) const {
  if (i < 0 || i >= numChildren_) {
    THROW(Pr, "A node with " << numChildren_ << " children has no child " << i << ".");
  }
  return static_cast<std::size_t>(i);
}

}  // namespace vandrelle
