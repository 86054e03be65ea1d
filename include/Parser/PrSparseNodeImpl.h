// Lists of (document, score) pairs in memory: PrSparseReadonly, a given list,
// and PrSparseNodeImpl, the N best of what is added.
#pragma once

#include <memory>

#include "Parser/PrLastAnswer.h"
#include "Parser/PrSparseNode.h"

namespace vandrelle {

class PrSparseReadonly : public PrSparseNode {
 public:
  // Takes over `tuples`, `numTuples` of them; both may be 0.
  PrSparseReadonly(int numTuples, std::unique_ptr<PrTuple[]> tuples);

  // The list must be sorted by document. Pairs of score 0 are passed over.
  int next(int* doc, float* score) override;

  void sort() override;
  // By falling score, equal scores by rising document.
  void sortByScore();

  // The list is as it was given: both throw _Exception_Unimpl.
  void add(int doc, float score) override;
  void zero() override;

  float max() override;
  float min() override;

  // The pairs in their present order, `i` from 0 below numTuples(). Unused places
  // of a list that is not full have score 0.
  int numTuples() const { return numTuples_; }
  int docNum(int i) const { return tuples_[i].doc; }
  float docScore(int i) const { return tuples_[i].score; }

 protected:
  enum SortMode { kUnsorted = 0, kByDocument = 1, kByScore = 2 };

  // The order of the pairs has changed: the place of the reading means nothing.
  void reordered(SortMode mode) {
    sortMode_ = mode;
    cachedTupleNum_ = 0;
    lastAnswer_.forget();
  }

  int numTuples_;
  int cachedTupleNum_ = 0;
  SortMode sortMode_ = kUnsorted;
  std::unique_ptr<PrTuple[]> tuples_;

 private:
  int search(int* doc, float* score);

  PrLastAnswer lastAnswer_;
};

// Keeps the `n` best of all documents added, in no order until sorted.
class PrSparseNodeImpl : public PrSparseReadonly {
 public:
  explicit PrSparseNodeImpl(int n);

  // Nothing happens for a score not above min(). Otherwise the pair replaces a
  // worst one, in one pass over the list; a list that is not full and was not
  // sorted yet takes it at once.
  void add(int doc, float score) override;
  void zero() override;
  // 0 until the list is full.
  float min() override { return min_; }

  // Replaces each score by map(score), which must keep the order of scores, and 0.
  template <class Map>
  void mapScores(Map map) {
    for (int i = 0; i < numTuples_; ++i) tuples_[i].score = map(tuples_[i].score);
    min_ = map(min_);
    reordered(kUnsorted);
    filled_ = numTuples_;
  }

 private:
  float min_ = 0;
  int filled_ = 0;  // below numTuples_: so many places are taken, the first ones
};

}  // namespace vandrelle
