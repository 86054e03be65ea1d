// Answers queries from the rows of an index on disk.
#pragma once

#include <memory>

#include "Index/IkIndexInfo.h"
#include "Index/IkRetriever.h"
#include "Index/IkRetrieverInput.h"
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

  PrSparseNode* retrieve(IkRetrieverInput* input, int resultSize) override;

  int similarityScaling() override { return similarityScaling_; }
  void similarityScaling(int mode) override { similarityScaling_ = mode; }
  PrParserNode* constraint() override { return constraint_; }
  void constraint(PrParserNode* node) override { constraint_ = node; }

  // What the retriever reads, to be set before the first query; none of it is owned.
  void info(IkIndexInfo* info);
  IkIndexInfo* info() const { return info_; }
  void indexData(IkDataFileBinder* data) { indexData_ = data; }
  IkDataFileBinder* indexData() const { return indexData_; }
  void wordTable(IkWordTable* table) { wordTable_ = table; }
  IkWordTable* wordTable() const { return wordTable_; }
  // One byte a document of the index.
  void normfile(const unsigned char* norms) { normfile_ = norms; }
  const unsigned char* normfile() const { return normfile_; }
  void qaBinder(QaBinder* binder) { qaBinder_ = binder; }
  QaBinder* qaBinder() const { return qaBinder_; }

  IkSimilarity& Similarity() { return sim_; }

  int maxDocs() const { return maxDocs_; }
  void maxDocs(int count) { maxDocs_ = count; }
  int tryQueryAcceleration() const { return tryQueryAcceleration_; }
  void tryQueryAcceleration(int mode) { tryQueryAcceleration_ = mode; }
  int usedQueryAccel() const { return usedQueryAccel_; }
  float rowFraction() const { return rowFraction_; }
  void rowFraction(float share) { rowFraction_ = share; }
  int scoreBucketsLength() const { return scoreBucketsLength_; }
  void scoreBucketsLength(int documents);
  int diminishStart() const { return diminishStart_; }
  void diminishStart(int start) { diminishStart_ = start; }
  float diminishFactor() const { return diminishFactor_; }
  void diminishFactor(float factor) { diminishFactor_ = factor; }
  int debug() const { return debug_; }
  void debug(int level) { debug_ = level; }

 private:
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
  int scoreBucketsLength_ = 2500;
};

}  // namespace vandrelle
