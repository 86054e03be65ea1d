// The operators that change what another node answers: NOT and AUGMENT.
#pragma once

#include "Parser/PrNodeCreator.h"

namespace vandrelle {

// (not node): two values in the place of the scores of a node.
//
//   hi     the score of documents above the limit, 0.0 without it
//   lo     the score of all others, 0.1
//   t      the limit, 0.0
//   docs   the size of the collection, as the operator was made
class PrNotCreator final : public PrNodeCreator {
 public:
  explicit PrNotCreator(int numDocuments) : def_numDocuments_(numDocuments) {}
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  int def_numDocuments_;
};

// (augment target match), (augment target), (augment -all match): see PrAugmentNode.
//
//   s      what scores are multiplied by, as the operator was made
//   um     not 0: by the score in the match too; 0 unless made otherwise
//   all    not 0: every document in the place of a target
class PrAugmentCreator final : public PrNodeCreator {
 public:
  explicit PrAugmentCreator(float scale = 1.0f, bool useMatchWeights = false)
      : def_scale_(scale), def_useMatchWeights_(useMatchWeights) {}
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  float def_scale_;
  int def_useMatchWeights_;
};

}  // namespace vandrelle
