// The receivers of rows while an index is changed.
#pragma once

#include "Index/IkDataFileUnpacker.h"

namespace vandrelle {

// Counts the documents that a row is made of.
class IkCalculateIdf final : public IkDataFileUnpacker {
 public:
  void action(int, int doc_freq, float) override { numDocs_ += doc_freq > 0; }
  int numDocs() const { return numDocs_; }

 private:
  int numDocs_ = 0;
};

// Adds the squared weight of each pair to the sum of its document.
class IkCalculateSums final : public IkDataFileUnpacker {
 public:
  // `sums`: `numDocs` of them, not owned.
  IkCalculateSums(int numDocs, float* sums) : numDocs_(numDocs), sums_(sums) {}
  // Throws _Exception_Ik for a document without a sum.
  void action(int doc_num, int doc_freq, float idf) override;

 private:
  int numDocs_;
  float* sums_;
};

// Adds a row to a dense one, and the number of its pairs to `*total_num`.
class IkCountingUnpacker final : public IkDataFileAdditiveIntUnpacker {
 public:
  IkCountingUnpacker(int rowSize, int* row, int* total_num)
      : IkDataFileAdditiveIntUnpacker(rowSize, row), total_num_(total_num) {}
  void action(int doc_num, int doc_freq, float idf) override {
    IkDataFileAdditiveIntUnpacker::action(doc_num, doc_freq, idf);
    ++*total_num_;
  }

 private:
  int* total_num_;
};

}  // namespace vandrelle
