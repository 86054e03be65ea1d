// Every document of a collection, each with score 1.0.
#pragma once

#include "Parser/PrParserNode.h"

namespace vandrelle {

class PrAllNode final : public PrParserNode {
 public:
  explicit PrAllNode(int numdocs) : numdocs_(numdocs) {}
  int next(int* doc, float* score) override;

 private:
  int numdocs_;
};

}  // namespace vandrelle
