// The working state of the query that a retriever is answering: the query vector,
// the cursors over its rows and the bytes behind them.
//
// A member of the retriever, and nothing in it is local to a function: what a throw
// leaves behind is cleared away before the next query.
#pragma once

#include <memory>
#include <vector>

#include "Index/IkDataFileBinder.h"
#include "Index/IkQueryInfo.h"
#include "Index/IkRetrieverInput.h"
#include "Index/IkUnpacker.h"

namespace vandrelle {

// A document and a frequency, as rows are merged.
struct IkRetrieverDocfreq {
  int doc;
  int freq;
};
inline bool sortDocfreq(const IkRetrieverDocfreq& a, const IkRetrieverDocfreq& b) {
  return a.doc != b.doc ? a.doc < b.doc : a.freq < b.freq;
}

// Keeps the packed pairs of rows.
class IkRowBuffers {
 public:
  // Bytes of the binder's current row, which have to be loaded.
  const unsigned char* keepRow(IkDataFileBinder* binder);
  unsigned char* allocate(std::size_t bytes);
  void clear();

 private:
  std::vector<std::unique_ptr<IkDataRowBuffer>> rows_;
  std::vector<std::unique_ptr<unsigned char[]>> bytes_;
};

class IkRetrieverQuery {
 public:
  // A term of the input, by its number.
  struct Term {
    IkRetrieverInput::TermData* data = nullptr;
    IkUnpacker unpacker;
    bool hasRow = false;   // the unpacker is bound, if only to an empty row
    int useCount = 0;      // dimensions that it takes part in
    int slot = -1;         // its dimension of the query vector
    int row = -1;          // its place in unpackTable
    int componentOf = -1;  // the last slot that took it in
  };

  void clear();

  int querySize() const { return static_cast<int>(queryInfo.size()); }
  int numUnpackers() const { return static_cast<int>(unpackTable.size()); }
  int numOperations() const { return static_cast<int>(ops.size()); }
  // Places the term's row in the table, once, and answers its number.
  int rowOf(Term& term);

  std::vector<Term> terms;
  std::vector<int> slotTerms;  // the term of each slot
  std::vector<IkQueryInfo> queryInfo;
  std::vector<IkUnpacker> unpackTable;
  // Operands are slots, -1 for what is false everywhere.
  std::vector<IkRetrieverInput::Operation> ops;
  std::vector<int> composites;  // slots with components
  IkRowBuffers buffers;
  bool hasDirection = false;     // the query vector isn't zero
  bool virtualOperands = false;  // an operation names a virtual term or a member

  // For one virtual term at a time.
  std::vector<int> components;
  std::vector<int> condensed;  // terms
  std::vector<IkRetrieverDocfreq> docfreqs;
};

}  // namespace vandrelle
