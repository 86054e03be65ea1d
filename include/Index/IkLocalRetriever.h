// Answers queries from the rows of an index on disk, as a vector-space ranker.
//
// The query is a vector of length 1, a dimension a term, with weight times idf. A
// document scores by the dot product with its damped term frequencies times its
// norm, times a factor for how many of the terms it has. Concepts are virtual
// terms: the frequencies of their words add up, and their idf comes from the sum
// of their document frequencies. One of three loops reads the rows:
//
//   computeResultSingleTerm      one word and nothing else
//   computeResultSimpleVirtual   up to 31 rows; a row at a time in ranges of
//                                documents that stay in cache; rows that can't lift
//                                a new document into the result stop opening some
//   computeResultNormal          anything: a merge of all rows
//
// A row's share in a virtual term is a score of its own in the range loop, where
// the merge adds up frequencies; so scores of concepts differ between the two.
//
// Queries are answered one at a time: buckets, maxDocs and the coordination table
// that was selected last belong to the object.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Index/IkBitArray2D.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkRetriever.h"
#include "Index/IkRetrieverBooleanMask.h"
#include "Index/IkRetrieverInput.h"
#include "Index/IkRetrieverQuery.h"
#include "Index/IkRetrieverScoreCache.h"
#include "Index/IkSimilarity.h"

namespace vandrelle {

class IkDataFileBinder;
class IkWordTable;
class PrSparseNodeImpl;
class QaBinder;

class IkLocalRetriever : public IkRetriever {
 public:
  IkLocalRetriever();
  ~IkLocalRetriever() override;

  // A `resultSize` above the number of documents counts as that. Throws _Exception_Ik
  // without an index, and what the word table and the row data file throw when they
  // are damaged; a row that is no good ends early.
  PrSparseNode* retrieve(IkRetrieverInput* input, int resultSize) override;

  int similarityScaling() override { return similarityScaling_; }
  void similarityScaling(int mode) override { similarityScaling_ = mode; }
  PrParserNode* constraint() override { return constraint_; }
  void constraint(PrParserNode* node) override { constraint_ = node; }

  // What the retriever reads, to be set before the first query; none of it is owned.
  // info() is taken into Similarity() at once.
  void info(IkIndexInfo* info);
  IkIndexInfo* info() const { return info_; }
  void indexData(IkDataFileBinder* data) { indexData_ = data; }
  IkDataFileBinder* indexData() const { return indexData_; }
  void wordTable(IkWordTable* table) { wordTable_ = table; }
  IkWordTable* wordTable() const { return wordTable_; }
  // One byte a document of the index; null for an index without documents.
  void normfile(const unsigned char* norms) { normfile_ = norms; }
  const unsigned char* normfile() const { return normfile_; }
  // The query accelerator; null for none.
  void qaBinder(QaBinder* binder) { qaBinder_ = binder; }
  QaBinder* qaBinder() const { return qaBinder_; }

  IkSimilarity& Similarity() { return sim_; }

  // Documents from this number on aren't looked at (the merge still takes the document
  // with the number itself); 0 for all. Any other value rules out the single-term loop
  // and the accelerator. A merge replaces 0 by the number of documents, for good.
  int maxDocs() const { return maxDocs_; }
  void maxDocs(int count) { maxDocs_ = count; }
  // 0: the accelerator is tried first; 1: never; 2: nothing else is.
  int tryQueryAcceleration() const { return tryQueryAcceleration_; }
  void tryQueryAcceleration(int mode) { tryQueryAcceleration_ = mode; }
  // Did it answer the last query?
  int usedQueryAccel() const { return usedQueryAccel_; }
  // The range loop stops once it has seen this share of each row's documents, 2000 at
  // least. Above 1: not before the rows end.
  float rowFraction() const { return rowFraction_; }
  void rowFraction(float share) { rowFraction_ = share; }
  // Documents in a range, from 1 to kMaxScoreBuckets; others count as the nearer end.
  int scoreBucketsLength() const { return scoreBucketsLength_; }
  void scoreBucketsLength(int documents);
  int diminishStart() const { return diminishStart_; }
  void diminishStart(int start) { diminishStart_ = start; }
  float diminishFactor() const { return diminishFactor_; }
  void diminishFactor(float factor) { diminishFactor_ = factor; }
  // Not 0: a log entry a query says how it was answered.
  int debug() const { return debug_; }
  void debug(int level) { debug_ = level; }

  static constexpr int kMaxScoreBuckets = 1 << 20;

 private:
  // A document of the current range.
  struct ScoreBucket {
    unsigned char termCount_ = 0;
    std::uint16_t serialNum_ = 0;
    float score_ = 0;
    uint32 mask_ = 0;  // a bit a row
    ScoreBucket* next_ = nullptr;
  };
  struct IkUnpackerExtra {
    IkUnpacker unpacker;
    float scale;
    int num;  // the place in the table of rows
  };
  // The mask of a bucket has a bit a row.
  static constexpr int kMaxRows = 32;
  // How far the ranges have come.
  struct RangeScan {
    float inclusiveMaxPossible[kMaxRows] = {};
    int iterateRange = 0;  // rows that may open new buckets
    float min = 0;         // of the result
    int count = 0;         // matches
  };

  // From the input to rows: Index/IkLocalRetrieverQuery.cc.
  void preprocessQuery(IkRetrieverInput* input);
  void assignSlots(IkRetrieverInput& input);
  void setUnpacker(const WmWord* word, IkUnpacker& unpacker, IkRowBuffers& buffers);
  void bindComposite(const IkRetrieverQuery::Term& term, IkQueryInfo& info);
  IkUnpacker makeCondensedUnpacker(const std::vector<int>& terms, IkRowBuffers& buffers);
  void normalizeQuery();
  void copyOperations(IkRetrieverInput& input);

  // Index/IkLocalRetriever.cc.
  void computeResult(IkRetrieverInput* input, PrSparseNodeImpl* result, int resultSize);
  int accelerateQuery(IkRetrieverInput* input, PrSparseNodeImpl* result, int resultSize);
  void estimateMatchCount(IkRetrieverInput* input);
  void computeResultSingleTerm(IkRetrieverInput* input, PrSparseNodeImpl* result);
  void adjustResult(PrSparseNodeImpl* result);
  bool nextConstraint(int doc, int& constraintDoc, float& constraintScore);
  int numDocuments() const;
  bool isLive(int doc) const { return deleter_ == nullptr || !deleter_->isDeleted(doc); }

  // The merge: Index/IkLocalRetrieverMerge.cc.
  void computeResultNormal(IkRetrieverInput* input, PrSparseNodeImpl* result);
  void makeVirtualMap();
  int findNextDoc();
  void advanceMatching(int doc);
  void calculateVirtualTerms(int doc);
  void calculateVirtualTerms();  // of the rows listed by findNextDoc()
  bool matchesQuery(int doc);
  void docScore(int doc, float& score, int& count);
  void stepRow(int row);

  // The ranges: Index/IkLocalRetrieverRange.cc.
  void computeResultSimpleVirtual(IkRetrieverInput* input, PrSparseNodeImpl* result);
  static bool UnpackerListSortFunction(const IkUnpackerExtra& a, const IkUnpackerExtra& b);
  void sortUnpackerList();
  void boundRows(RangeScan& scan);
  void bindMasks(IkRetrieverInput& input);
  void collectRange(int base, RangeScan& scan, PrSparseNodeImpl* result);
  void clearScoreBuckets();
  template <bool considerNewDocs>
  int scoreDocRange(int base, int max, float scale, IkUnpacker& unpacker, uint32 mask);
  static bool matchMultipleMasks(uint32 matches, const IkRetrieverBooleanMask* masks, int numMasks);

  IkIndexInfo* info_ = nullptr;
  IkDataFileBinder* indexData_ = nullptr;
  IkWordTable* wordTable_ = nullptr;
  const unsigned char* normfile_ = nullptr;
  int similarityScaling_ = 0;
  IkSimilarity sim_;
  int diminishStart_ = 0x7fffffff;
  float diminishFactor_ = 0.7f;
  PrParserNode* constraint_ = nullptr;
  QaBinder* qaBinder_ = nullptr;
  int usedQueryAccel_ = 0;
  int tryQueryAcceleration_ = 0;
  float rowFraction_ = 1.1f;
  int maxDocs_ = 0;
  int debug_ = 0;
  std::uint16_t serialNum_ = 0;  // the buckets of the current range have it
  std::unique_ptr<ScoreBucket[]> scoreBuckets_;
  ScoreBucket* firstBucket_ = nullptr;  // those touched in the range
  int scoreBucketsLength_ = 0;

  // Of the query at hand.
  IkRetrieverQuery query_;
  std::unique_ptr<PrSparseNodeImpl> result_;
  IkDeleter* deleter_ = nullptr;  // null without deletions
  std::vector<uint32> rowDocs_;   // the document of each row, kNoDoc behind its end
  std::vector<int> rowList_;      // rows at the current document
  bool rowListValid_ = false;     // false: there are too many, any row may be at it
  std::vector<unsigned char> truth_;
  std::vector<unsigned char> opstack_;
  std::unique_ptr<IkBitArray2D> virtmap_;  // slots by rows: is the row a component?
  IkRetrieverScoreCache scoreCache_;
  std::vector<IkUnpackerExtra> sortedRows_;
  std::vector<IkRetrieverBooleanMask> masks_;
};

}  // namespace vandrelle
