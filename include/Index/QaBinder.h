// The query accelerator: the best documents of words, computed beforehand and kept
// in <root>.qa.map and <root>.qa.cache, that answer short queries without a look
// at their rows. No stage of indexing writes these files yet, and their format is
// still to be settled, so that every lookup fails and the rows are read.
#pragma once

#include "Fun/FdRBTree.h"
#include "Fun/FdVector.h"
#include "MagicWord.h"

namespace vandrelle {

class IkLocalIndexBinder;

// A document of an answer, ordered by falling score.
struct QaDocData {
  int doc;
  float score;

  bool operator<(const QaDocData& other) const {
    return score != other.score ? score > other.score : doc < other.doc;
  }
};

class QaBinder {
 public:
  virtual ~QaBinder() = default;

  // Are both files of the index `root` there?
  static bool exists(const char* root);

  // Doesn't own `binder`. `map` is non-zero for mapping the files.
  void bind(IkLocalIndexBinder* binder, const char* root, int map);

  // Fills `tree` with the `resultSize` best documents of the words. 0 if it can't.
  virtual int lookup(FdVector<WmMagicWord>& words, FdRBTree<QaDocData>& tree, int resultSize);

 private:
  IkLocalIndexBinder* binder_ = nullptr;
};

}  // namespace vandrelle
