#include "Parser/PrThreshhold.h"

#include <limits>

namespace vandrelle {

int PrThreshhold::answer(int doc, float value, int* docOut, float* scoreOut) {
  *docOut = doc;
  *scoreOut = value;
  return 1;
}

// A child without end is not to be searched through all numbers there are.
bool PrThreshhold::pastEnd(int doc) const {
  return doc == std::numeric_limits<int>::max() || (totaldocs_ > 0 && doc >= totaldocs_);
}

int PrThreshhold::nextAbove(int* doc, float* score) {
  if (child_ == nullptr) return 0;
  int found = *doc;
  while (child_->next(&found, score)) {
    if (*score > threshhold_) return answer(found, aboveValue_, doc, score);
    if (pastEnd(found)) return 0;
    ++found;
  }
  return 0;
}

int PrThreshhold::next(int* doc, float* score) {
  if (belowValue_ != 0 && totaldocs_ > 0 && *doc >= totaldocs_) return 0;
  return lastAnswer_.next(doc, score, [this](int* d, float* s) { return search(d, s); });
}

// The end is tested on the document asked for: after a run of documents that the
// child holds and that have no value of their own, the answer can be `totaldocs_`
// itself. What reads the node must not take it for a document of the collection.
int PrThreshhold::search(int* doc, float* score) {
  if (belowValue_ == 0) return nextAbove(doc, score);
  int found = *doc;
  for (;; ++found) {
    const int wanted = found;
    float value = 0;
    if (child_ == nullptr || !child_->next(&found, &value)) {
      return answer(found, belowValue_, doc, score);
    }
    if (found > wanted || value < threshhold_) return answer(wanted, belowValue_, doc, score);
    if (aboveValue_ != 0) return answer(found, aboveValue_, doc, score);
    if (pastEnd(found)) return 0;
  }
}

}  // namespace vandrelle
