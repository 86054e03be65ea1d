// From a stem to the words of the index behind it, the most significant first:
// those with the highest idf.
#pragma once

#include "Fun/FdRBTree.h"
#include "MagicWord.h"

namespace vandrelle {

class FiStemTable;
class IkIdfCache;

struct IkUnstemmerTableData {
  float idf;
  WmMagicWord word;

  // Falling idf, then the collation of words.
  bool operator<(const IkUnstemmerTableData& other) const {
    return idf != other.idf ? idf > other.idf : word < other.word;
  }
};

class IkUnstemmer {
 public:
  using Tree = FdRBTree<IkUnstemmerTableData>;

  // Owns neither.
  IkUnstemmer(IkIdfCache* idfCache, FiStemTable* stemTable)
      : idfCache_(idfCache), stemTable_(stemTable) {}

  // Adds the words of `stem` to `tree`, which keeps its best `maxCount`.
  void find(const WmWord& stem, Tree& tree, int maxCount);

 private:
  IkIdfCache* idfCache_;
  FiStemTable* stemTable_;
};

}  // namespace vandrelle
