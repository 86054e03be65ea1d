// Gathers documents into groups of like ones, by the digests of their most
// important words. Serves lists of search results, and summaries, whose documents
// are sentences.
//
// Group average and single link look at every pair of documents: QlGatherIterated
// does so for a sample only and is the one to take for longer lists.
#pragma once

#include <vector>

namespace vandrelle {

class IkIndexBinder;
class IkTranspose;
class IkWordTable;
class PrNodeCreator;
class QlGatherResult;

class QlGather {
 public:
  QlGather() = default;
  virtual ~QlGather() = default;
  QlGather(const QlGather&) = delete;
  QlGather& operator=(const QlGather&) = delete;

  // Groups of the `numDocs` documents at `docs`, numbers of the index: a new
  // result, owned by the caller, which uses the index that this was made for.
  // Throws what reading the digests throws.
  virtual QlGatherResult* gather(const int* docs, int numDocs) = 0;

  // New strategies on an index, which isn't owned and must have digests: single
  // link (document to document), group average, and each of them on a sample.
  static QlGather* GatherDD(IkIndexBinder* index);
  static QlGather* GatherCentroid(IkIndexBinder* index);
  static QlGather* GatherIterDD(IkIndexBinder* index);
  static QlGather* GatherIterCentroid(IkIndexBinder* index);

  // New operators of the query language that gather so unless told otherwise, see
  // QlGatherCreator. Not to be given an index that goes before them.
  static PrNodeCreator* GatherDDCreator(IkIndexBinder* index);
  static PrNodeCreator* GatherCentroidCreator(IkIndexBinder* index);
  static PrNodeCreator* GatherIterDDCreator(IkIndexBinder* index);
  static PrNodeCreator* GatherIterCentroidCreator(IkIndexBinder* index);
};

class QlGatherImpl : public QlGather {
 public:
  explicit QlGatherImpl(IkIndexBinder* index);

  // How many groups there are to be. There can be more of them, if the rest has
  // nothing in common, and fewer documents.
  int numGroups() const { return numGroups_; }
  void numGroups(int groups) { numGroups_ = groups; }
  // Groups less alike than this stay apart, 0 to 1.
  float threshGroup() const { return threshGroup_; }
  void threshGroup(float threshold) { threshGroup_ = threshold; }
  // Non-zero: tells on the error stream how the groups came out.
  int debug() const { return debug_; }
  void debug(int level) { debug_ = level; }

 protected:
  int debug_ = 0;
  int numGroups_ = 5;
  float threshGroup_ = 0.0f;
  IkTranspose* transpose_;
  IkWordTable* wordTable_;
};

// Group average: joins the two most alike groups, again and again; the likeness
// of groups is the mean over their pairs of documents (Sokal and Michener's
// unweighted pair group method). Takes numDocs squared floats halved, and time
// with the cube.
class QlGatherAvg : public QlGatherImpl {
 public:
  using QlGatherImpl::QlGatherImpl;
  QlGatherResult* gather(const int* docs, int numDocs) override;
};

// Single link: the likeness of groups is that of their most alike documents.
// Takes 12 bytes a pair of documents.
class QlGatherMax : public QlGatherImpl {
 public:
  using QlGatherImpl::QlGatherImpl;
  QlGatherResult* gather(const int* docs, int numDocs) override;

 private:
  struct Pair {
    int first;
    int second;
    float similarity;
  };

  std::vector<Pair> createMaxList(const int* docs, int numDocs) const;
  // By falling similarity, in the order of their making where that is equal.
  static void sortGatherData(std::vector<Pair>* pairs);
  // Joins the groups of two documents: the higher number goes, and the numbers
  // above it shift down.
  static void groupImpl(std::vector<int>* groups, int first, int second);
};

}  // namespace vandrelle
