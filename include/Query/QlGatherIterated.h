// Gathering of long lists: another strategy groups a random sample, the groups are
// summed up in vectors, and then every document goes to its nearest vector. Time
// grows with the number of documents alone.
#pragma once

#include <memory>
#include <vector>

#include "Query/QlGather.h"
#include "Query/QlGatherVector.h"

namespace vandrelle {

class QlGatherResultArray;

class QlGatherIterated : public QlGatherImpl {
 public:
  static constexpr int kVectorSize = 128;
  static constexpr int kFirstIterDocuments = 50;

  // Takes `sub`, the strategy for the sample, over.
  QlGatherIterated(IkIndexBinder* index, QlGatherImpl* sub);
  ~QlGatherIterated() override;

  // The sample is drawn with random(): a process that seeds nothing repeats its
  // groups from run to run.
  QlGatherResult* gather(const int* docs, int numDocs) override;

  // How often the documents are dealt out to vectors. With 0 only the sample is
  // gathered.
  void iterations(int count) { iterations_ = count; }
  // Non-zero: a vector is made of that many documents, those nearest to the
  // vector of all.
  void truncatedSize(int documents) { truncatedSize_ = documents; }
  // Entries of a group's vector.
  void gvsize(int entries) { gvsize_ = entries; }
  // Words a group in what debug() prints.
  void numWords(int words) { numWords_ = words; }
  // Documents of the sample.
  void firstIterDocuments(int documents) { firstIterDocuments_ = documents; }

 private:
  using Vectors = std::vector<std::unique_ptr<QlGatherVector>>;

  QlGatherResult* gatherSample(const int* docs, int numDocs);
  Vectors makeClumpVectors(QlGatherResult* gr, int truncnum) const;
  // Of the `count` documents of a group nearest to `whole`.
  std::unique_ptr<QlGatherVector> truncatedVector(QlGatherResult* gr, int group,
                                                  const QlGatherVector& whole, int count) const;
  std::unique_ptr<QlGatherResultArray> vectorClump(const Vectors& vecs, const int* docs,
                                                   int numDocs, IkTranspose* transpose) const;
  void printWords(QlGatherResult* result) const;
  void printClumps(const Vectors& vecs, const std::vector<double>& sums,
                   const std::vector<int>& counts) const;

  std::unique_ptr<QlGatherImpl> sub_;
  int iterations_ = 1;
  int truncatedSize_ = 0;
  int gvsize_ = kVectorSize;
  int numWords_ = 5;
  int firstIterDocuments_ = kFirstIterDocuments;
};

}  // namespace vandrelle
