#include "Parser/PrSparseNodeImpl.h"

#include <algorithm>
#include <utility>

#include "Parser/PrException.h"

namespace vandrelle {

PrSparseReadonly::PrSparseReadonly(int numTuples, std::unique_ptr<PrTuple[]> tuples)
    : numTuples_(std::max(numTuples, 0)), tuples_(std::move(tuples)) {}

int PrSparseReadonly::next(int* doc, float* score) {
  return lastAnswer_.next(doc, score, [this](int* d, float* s) { return search(d, s); });
}

int PrSparseReadonly::search(int* doc, float* score) {
  if (cachedTupleNum_ >= numTuples_ || tuples_[cachedTupleNum_].doc > *doc) cachedTupleNum_ = 0;
  for (; cachedTupleNum_ < numTuples_; ++cachedTupleNum_) {
    const PrTuple& tuple = tuples_[cachedTupleNum_];
    if (tuple.doc >= *doc && tuple.score != 0) {
      *doc = tuple.doc;
      *score = tuple.score;
      return 1;
    }
  }
  return 0;
}

// Of a document that stands twice in the list the higher score answers.
void PrSparseReadonly::sort() {
  if (sortMode_ == kByDocument) return;
  std::stable_sort(tuples_.get(), tuples_.get() + numTuples_,
                   [](const PrTuple& a, const PrTuple& b) {
                     return a.doc != b.doc ? a.doc < b.doc : a.score > b.score;
                   });
  reordered(kByDocument);
}

void PrSparseReadonly::sortByScore() {
  if (sortMode_ == kByScore) return;
  std::stable_sort(tuples_.get(), tuples_.get() + numTuples_,
                   [](const PrTuple& a, const PrTuple& b) {
                     return a.score != b.score ? a.score > b.score : a.doc < b.doc;
                   });
  reordered(kByScore);
}

void PrSparseReadonly::add(int, float) {
  THROW(Unimpl, "A read-only list of results takes no documents.");
}

void PrSparseReadonly::zero() { THROW(Unimpl, "A read-only list of results can't be emptied."); }

float PrSparseReadonly::max() {
  if (numTuples_ == 0) return 0;
  float highest = tuples_[0].score;
  if (sortMode_ == kByScore) return highest;
  for (int i = 1; i < numTuples_; ++i) highest = std::max(highest, tuples_[i].score);
  return highest;
}

float PrSparseReadonly::min() {
  if (numTuples_ == 0) return 0;
  float lowest = tuples_[0].score;
  for (int i = 1; i < numTuples_; ++i) lowest = std::min(lowest, tuples_[i].score);
  return lowest;
}

PrSparseNodeImpl::PrSparseNodeImpl(int n)
    : PrSparseReadonly(n, std::make_unique<PrTuple[]>(static_cast<std::size_t>(std::max(n, 0)))) {}

// Equal worst scores: only one of them gives way, so min_ stays as it is and the
// rest of the list need not be looked at.
void PrSparseNodeImpl::add(int doc, float score) {
  if (!(score > min_)) return;
  if (sortMode_ != kUnsorted) filled_ = numTuples_;
  reordered(kUnsorted);
  if (filled_ + 1 < numTuples_) {
    tuples_[filled_++] = {doc, score};
    return;
  }
  filled_ = numTuples_;
  float nextmin = score;
  bool placed = false;
  for (int i = 0; i < numTuples_; ++i) {
    PrTuple& tuple = tuples_[i];
    if (tuple.score == min_) {
      if (placed) return;
      tuple = {doc, score};
      placed = true;
    } else if (tuple.score < nextmin) {
      nextmin = tuple.score;
    }
  }
  min_ = nextmin;
}

void PrSparseNodeImpl::zero() {
  std::fill_n(tuples_.get(), numTuples_, PrTuple{});
  min_ = 0;
  filled_ = 0;
  reordered(kUnsorted);
}

}  // namespace vandrelle
