// Groups of documents: what a QlGather answers.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Query/QlGatherVector.h"

namespace vandrelle {

class FdBag;
class IkTranspose;
class IkWordTable;

// Groups count from 0 to numGroups() - 1, and the documents of a group from 0 to
// numDocs(group) - 1; asking for others is a fault of the caller.
class QlGatherResult {
 public:
  QlGatherResult() = default;
  virtual ~QlGatherResult() = default;
  QlGatherResult(const QlGatherResult&) = delete;
  QlGatherResult& operator=(const QlGatherResult&) = delete;

  virtual int numGroups() = 0;
  virtual int numDocs(int group) = 0;
  // A document number, in the order in which the documents were given.
  virtual int doc(int group, int i) = 0;

  // The `n` words that weigh most in the group: a new queue, owned by the caller,
  // of words (WmWord) with a float, the highest first. A word that stands
  // twice in the group's vector comes twice. None if the group has no vector.
  virtual FdBag* summaryWords(int group, int n) = 0;
  // The `n` documents nearest to the group's vector: a new queue, owned by the
  // caller, of document numbers (int) with a float, the nearest first, in the
  // order of the group where they are equally near. Documents without a word in
  // common with the vector are left out.
  virtual FdBag* summaryDocs(int group, int n) = 0;
  // The group's words, sorted by word; owned by the result. Null if it has none.
  virtual QlGatherVector* summaryVector(int group) = 0;
};

// Answers by the group's vector. The index must outlive it.
class QlGatherResultImpl : public QlGatherResult {
 public:
  QlGatherResultImpl(IkTranspose* transpose, IkWordTable* wordTable)
      : transpose_(transpose), wordTable_(wordTable) {}

  FdBag* summaryWords(int group, int n) override;
  FdBag* summaryDocs(int group, int n) override;

 protected:
  IkTranspose* transpose_;
  IkWordTable* wordTable_;
};

// Keeps groups as lists. A group has a vector once it is given one.
class QlGatherResultArray : public QlGatherResultImpl {
 public:
  // `groupList` holds the group of each of the `numDocs` documents of `docList`:
  // groups count from 0 to the highest number there. Documents with a negative
  // number make up one more group, the last.
  QlGatherResultArray(IkTranspose* transpose, IkWordTable* wordTable, const int* groupList,
                      const int* docList, int numDocs);

  int numGroups() override { return numGroups_; }
  int numDocs(int group) override { return static_cast<int>(groupOf(group).size()); }
  int doc(int group, int i) override { return groupOf(group)[static_cast<std::size_t>(i)]; }
  QlGatherVector* summaryVector(int group) override { return vectorOf(group).get(); }
  // Sets a group's vector, which must be sorted by word.
  void summaryVector(int group, std::unique_ptr<QlGatherVector> vector) {
    vectorOf(group) = std::move(vector);
  }

 protected:
  std::unique_ptr<QlGatherVector>& vectorOf(int group) {
    return sumvecs_[static_cast<std::size_t>(group)];
  }

 private:
  const std::vector<int>& groupOf(int group) const {
    return group_[static_cast<std::size_t>(group)];
  }

  int numGroups_;
  std::vector<std::vector<int>> group_;
  std::vector<std::unique_ptr<QlGatherVector>> sumvecs_;
};

// Makes a group's vector of its documents when it is first asked for.
class QlGatherResultArrayAuto : public QlGatherResultArray {
 public:
  using QlGatherResultArray::QlGatherResultArray;
  using QlGatherResultArray::summaryVector;

  QlGatherVector* summaryVector(int group) override;

 private:
  int vectorSize_ = 64;  // entries of a vector
};

}  // namespace vandrelle
