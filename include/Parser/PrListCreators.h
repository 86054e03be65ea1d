// The operators that make a node of document numbers: MAX, SPARSE, RANGE and the
// bit vector.
#pragma once

#include "Parser/PrNodeCreator.h"

namespace vandrelle {

// (max node ... doc ... doc:score ...): the best documents of all together.
//
//   n      how many, 20 without it, at most kMaxScores
//   min    the lowest score of a node that counts, 0.0
//   w      not 0: the weights of the nodes count, brought to a sum of 1; else the
//          nodes share that sum alike
class PrMultiMaxCreator final : public PrNodeCreator {
 public:
  static constexpr int kMaxScores = 10000;

  explicit PrMultiMaxCreator(int numDocuments) : numDocuments_(numDocuments) {}
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  int numDocuments_;
};

// (sparse doc ...): the first 20 of them.
class PrSparseCreator final : public PrNodeCreator {
 public:
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;
};

// (range first last): both included.
class PrRangeCreator final : public PrNodeCreator {
 public:
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;
};

// (. doc ... first-last ... node ...): a set of documents. What is not below the
// size of the collection is left out.
//
//   score  the score of all, 1.0 without it
class PrBitVectorCreator final : public PrNodeCreator {
 public:
  explicit PrBitVectorCreator(int size) : size_(size) {}
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  int size_;
};

}  // namespace vandrelle
