// Makes the nodes of the query language and prints results.
#pragma once

#include <iosfwd>
#include <limits>

#include "Parser/PrScoreFunction.h"

namespace vandrelle {

class PrMultiNode;
class PrNodeCreator;
class PrParser;
class PrParserNode;
class PrSparseNode;
class PrThreshhold;
class TkLexer;
class TkStemmer;

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

  // A parser without keywords. It does not own the operators that are bound in it.
  static PrParser* Parser();

  // The operators, to be bound to keywords. Their classes tell what they take.
  static PrNodeCreator* AndCreator();
  static PrNodeCreator* OrCreator();
  // `numDocuments` is the size of the collection, where its documents end.
  static PrNodeCreator* NotCreator(int numDocuments);
  static PrNodeCreator* SparseCreator();
  // Documents from `numDocuments` on do not count, which ends the reading of nodes
  // that have no end.
  static PrNodeCreator* MaxCreator(int numDocuments = std::numeric_limits<int>::max());
  // None of the three is owned.
  static PrNodeCreator* StreamCreator(TkStemmer* stemmer, TkLexer* lexer, std::istream* is);
  // For documents 0 to `size` - 1.
  static PrNodeCreator* BitVectorCreator(int size);
  static PrNodeCreator* WordCreator();
  // `scale` is what the operator multiplies by unless told otherwise.
  static PrNodeCreator* AugmentCreator(float scale = 1.0f);
  static PrNodeCreator* RangeCreator();

  // Reads the node from its start and prints a line a document.
  static void print(PrParserNode* node, std::ostream& os);

  // In two columns, by document and by score. A node of more than 2000 documents
  // is printed by print(), with a warning on the error stream.
  static void printSorted(PrParserNode* node, std::ostream& os);
};

}  // namespace vandrelle
