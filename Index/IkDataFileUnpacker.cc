#include "Index/IkDataFileUnpacker.h"

#include <algorithm>

#include "Index/IkException.h"

namespace vandrelle {

void IkDataFileIntUnpacker::action(int doc_num, int doc_freq, float) {
  requireInRow(doc_num);
  row_[doc_num] = doc_freq;
}

void IkDataFileIntUnpacker::zeroRow() { std::fill_n(row_, rowSize_, 0); }

void IkDataFileIntUnpacker::outsideRow(int doc_num) const {
  THROW(Ik, "Document " << doc_num << " is outside of a row of " << rowSize_ << " documents");
}

void IkDataFileAdditiveIntUnpacker::action(int doc_num, int doc_freq, float) {
  requireInRow(doc_num);
  row_[doc_num] += doc_freq;
}

void IkDataFileFloatUnpacker::action(int doc_num, int doc_freq, float idf) {
  if (static_cast<unsigned>(doc_num) >= static_cast<unsigned>(rowSize_)) {
    THROW(Ik, "Document " << doc_num << " is outside of a row of " << rowSize_ << " documents");
  }
  row_[doc_num] = static_cast<float>(doc_freq) * idf / sum_[doc_num];
}

void IkDataFileFloatUnpacker::zeroRow() { std::fill_n(row_, rowSize_, 0.0f); }

}  // namespace vandrelle
