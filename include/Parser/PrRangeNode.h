// The documents from a first to a last one, both included, each with score 1.0.
#pragma once

#include "Parser/PrParserNode.h"

namespace vandrelle {

class PrRangeNode final : public PrParserNode {
 public:
  // Empty if `finish` is below `start`.
  PrRangeNode(int start, int finish) : start_(start), finish_(finish) {}
  int next(int* doc, float* score) override;

 private:
  int start_;
  int finish_;
};

}  // namespace vandrelle
