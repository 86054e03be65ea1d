// Nodes with weighted children.
#pragma once

#include <memory>
#include <vector>

#include "Parser/PrException.h"
#include "Parser/PrLastAnswer.h"
#include "Parser/PrParserNode.h"
#include "Parser/PrScoreFunction.h"

namespace vandrelle {

class PrMultiNode : public PrParserNode {
 public:
  virtual int numChildren() const = 0;

  // Child `i`, null if it was not set yet; `i` from 0 below numChildren().
  virtual PrParserNode* child(int i) const = 0;
  // Takes over `node`; a child set before is deleted.
  virtual void child(int i, PrParserNode* node) = 0;

  virtual float childWeight(int i) const = 0;
  virtual void childWeight(int i, float weight) = 0;

  // Divides each weight by the sum of all.
  virtual void normalize() = 0;

  // Null stands for CombineAverage.
  virtual void scoreFunction(ScoreFunction function) = 0;
};

// Holds the children and their weights, 1.0 at first. The operations on one
// child throw _Exception_Pr for an `i` out of range.
class PrMultiBaseNode : public PrMultiNode {
 public:
  explicit PrMultiBaseNode(int numChildren);

  int numChildren() const override { return numChildren_; }
  PrParserNode* child(int i) const override { return children_[checked(i)].get(); }
  void child(int i, PrParserNode* node) override;
  float childWeight(int i) const override { return childWeights_[checked(i)]; }
  void childWeight(int i, float weight) override;
  void normalize() override;

 protected:
  std::size_t checked(int i) const;

  int numChildren_;
  std::vector<std::unique_ptr<PrParserNode>> children_;
  std::vector<float> childWeights_;
  PrLastAnswer lastAnswer_;
};

}  // namespace vandrelle
