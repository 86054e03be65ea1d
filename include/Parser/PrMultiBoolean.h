// AND and OR over weighted children.
#pragma once

#include "Parser/PrMultiNode.h"

namespace vandrelle {

class PrMultiBoolean : public PrMultiBaseNode {
 public:
  // The scores of the children lie in an array of this size while they are
  // combined.
  static constexpr int kMaxChildren = 20;

  // Throws _Exception_Pr for more than kMaxChildren children.
  PrMultiBoolean(int numChildren, ScoreFunction function);

  int next(int* doc, float* score) final;
  void scoreFunction(ScoreFunction function) override;

 protected:
  // next(), where the answer is not known yet.
  virtual int search(int* doc, float* score) = 0;

  // Multiplies each of numChildren() scores by its child's weight.
  void weightScores(float* scores) const;

  ScoreFunction score_f_;
};

// The documents that all children hold.
class PrMultiAndNode final : public PrMultiBoolean {
 public:
  using PrMultiBoolean::PrMultiBoolean;

 protected:
  int search(int* doc, float* score) override;
};

// The documents that any child holds.
class PrMultiOrNode final : public PrMultiBoolean {
 public:
  using PrMultiBoolean::PrMultiBoolean;

 protected:
  int search(int* doc, float* score) override;
};

}  // namespace vandrelle
