// The best documents of all children together. A document in several children
// competes with each of its weighted scores.
#pragma once

#include <limits>

#include "Parser/PrMultiNode.h"
#include "Parser/PrSparseNodeImpl.h"

namespace vandrelle {

class PrMultiMax final : public PrMultiBaseNode {
 public:
  // Keeps the `numScores` best; weighted scores below `minScore` do not count.
  // Documents of children from `numDocuments` on do not count, so that children
  // without end may be read.
  PrMultiMax(int numChildren, int numScores, float minScore,
             int numDocuments = std::numeric_limits<int>::max());

  // The first call reads all children to their ends.
  int next(int* doc, float* score) override;

  // Lets a document compete that no child holds.
  void add(int doc, float score) { nodeimpl_.add(doc, score); }

  // Without effect: the best score is the score.
  void scoreFunction(ScoreFunction) override {}

 private:
  void visitChildren();

  PrSparseNodeImpl nodeimpl_;
  float minScore_;
  int numDocuments_;
  bool visited_ = false;
};

}  // namespace vandrelle
