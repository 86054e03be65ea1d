// The operators AND and OR.
#pragma once

#include "Parser/PrMultiBoolean.h"
#include "Parser/PrNodeCreator.h"

namespace vandrelle {

// (and node node ...): 2 to PrMultiBoolean::kMaxChildren nodes, each with its
// weight; the weights are brought to a sum of 1.
//
//   mode   how scores are combined: avg (without it, and for any other value),
//          norm, prod or max, in any case
class PrMultiNodeCreator : public PrNodeCreator {
 public:
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 protected:
  virtual PrMultiNode* newNode(int numChildren) = 0;
};

class PrMultiAndCreator final : public PrMultiNodeCreator {
 protected:
  PrMultiNode* newNode(int numChildren) override;
};

class PrMultiOrCreator final : public PrMultiNodeCreator {
 protected:
  PrMultiNode* newNode(int numChildren) override;
};

}  // namespace vandrelle
