#include "Parser/PrMultiBoolean.h"

namespace vandrelle {

PrMultiBoolean::PrMultiBoolean(int numChildren, ScoreFunction function)
    : PrMultiBaseNode(numChildren), score_f_(CombineAverage) {
  if (numChildren > kMaxChildren) {
    THROW(Pr, "A boolean node can't have " << numChildren << " children, at most " << kMaxChildren
                                           << ".");
  }
  PrMultiBoolean::scoreFunction(function);
}

void PrMultiBoolean::scoreFunction(ScoreFunction function) {
  score_f_ = function == nullptr ? CombineAverage : function;
  lastAnswer_.forget();
}

int PrMultiBoolean::next(int* doc, float* score) {
  return lastAnswer_.next(doc, score, [this](int* d, float* s) { return search(d, s); });
}

void PrMultiBoolean::weightScores(float* scores) const {
  for (int i = 0; i < numChildren_; ++i) scores[i] *= childWeights_[static_cast<std::size_t>(i)];
}

int PrMultiAndNode::search(int* doc, float* score) {
  if (numChildren_ == 0) return 0;
  float childscore[kMaxChildren];
  int wanted = *doc;
  for (int i = 0; i < numChildren_;) {
    PrParserNode* node = children_[static_cast<std::size_t>(i)].get();
    int found = wanted;
    if (node == nullptr || !node->next(&found, &childscore[i])) return 0;
    if (found == wanted) {
      ++i;
    } else {
      wanted = found;
      i = 0;
    }
  }
  weightScores(childscore);
  *doc = wanted;
  *score = score_f_(childscore, numChildren_);
  return 1;
}

// When a child turns out to hold the smallest document so far, its own score is
// dropped and those of the children before it stay, although they belong to a
// later document. Result lists depend on it: do not make it the textbook union.
int PrMultiOrNode::search(int* doc, float* score) {
  float childscore[kMaxChildren] = {};
  int childmin = -1;
  bool answered = false;
  for (int i = 0; i < numChildren_; ++i) {
    PrParserNode* node = children_[static_cast<std::size_t>(i)].get();
    int found = *doc;
    float value = 0;
    if (node == nullptr || !node->next(&found, &value)) continue;
    answered = true;
    if (childmin == -1) childmin = found;
    childscore[i] = found == childmin ? value : 0;
    if (found < childmin) childmin = found;
  }
  if (!answered) return 0;
  weightScores(childscore);
  *doc = childmin;
  *score = score_f_(childscore, numChildren_);
  return 1;
}

}  // namespace vandrelle
