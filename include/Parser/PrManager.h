// Makes the nodes of the query language and prints results.
#pragma once

#include <iosfwd>

#include "Parser/PrScoreFunction.h"

namespace vandrelle {

class PrMultiNode;
class PrParserNode;
class PrSparseNode;
class PrThreshhold;

class PrManager {
 public:
  // Each answers a new node that the caller owns.

  // `n` children, set afterwards; at most PrMultiBoolean::kMaxChildren. A null
  // function stands for CombineAverage.
  static PrMultiNode* And(int n, ScoreFunction function);
  static PrMultiNode* Or(int n, ScoreFunction function);

  // The documents that the child, set afterwards, does not hold, each with
  // score `value`. Set the number of documents too, or there is no end.
  static PrThreshhold* Not(float value);
  static PrThreshhold* Threshhold(float above, float below, float thresh, int totaldocs);

  // The `n` best of what is added.
  static PrSparseNode* Sparse(int n);
  static PrSparseNode* Null();
  static PrParserNode* All(int n);

  // Reads the node from its start and prints a line a document.
  static void print(PrParserNode* node, std::ostream& os);

  // In two columns, by document and by score. A node of more than 2000 documents
  // is printed by print(), with a warning on the error stream.
  static void printSorted(PrParserNode* node, std::ostream& os);
};

}  // namespace vandrelle
