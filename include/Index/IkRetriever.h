// Answers queries: the documents that match an IkRetrieverInput best.
#pragma once

namespace vandrelle {

class IkRetrieverInput;
class PrParserNode;
class PrSparseNode;

class IkRetriever {
 public:
  virtual ~IkRetriever() = default;

  // The `resultSize` best documents with their scores, in no order (sort() orders
  // them by number); places beyond the documents that match have score 0. The
  // number of matching documents is stored in `input`. The caller owns the result.
  virtual PrSparseNode* retrieve(IkRetrieverInput* input, int resultSize) = 0;

  // 0: raw scores. Others: scores as shares of a right angle, from 0 to 1; 2: and
  // documents with few of the query's words lose by that.
  virtual int similarityScaling() = 0;
  virtual void similarityScaling(int mode) = 0;

  // Only documents of this node are answered, their scores multiplied by the
  // node's. Null for no constraint. Not owned.
  virtual PrParserNode* constraint() = 0;
  virtual void constraint(PrParserNode* node) = 0;
};

}  // namespace vandrelle
