// A result that is a short list of documents with their scores: the interface
// that the retriever and the transposition fill.
#pragma once

#include "Parser/PrParserNode.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {

struct PrTuple {
  int32 doc;
  float score;
};
static_assert(sizeof(PrTuple) == 8);

class PrSparseNode : public PrParserNode {
 public:
  // Orders by document, which next() needs.
  virtual void sort() = 0;

  virtual void add(int doc, float score) = 0;

  // Makes the node empty again.
  virtual void zero() = 0;

  // The highest score, 0 for an empty node.
  virtual float max() = 0;

  // The lowest score that is kept. What is not above it is not worth adding.
  virtual float min() = 0;
};

}  // namespace vandrelle
