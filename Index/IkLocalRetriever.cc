#include "Index/IkLocalRetriever.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "Index/IkException.h"
#include "Index/IkScaledAcos.h"
#include "Index/QaBinder.h"
#include "Parser/PrSparseNodeImpl.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

constexpr int kScoreBuckets = 2500;
constexpr int kMaxRangeTerms = 8;
constexpr int kMaxAcceleratedTerms = 4;
constexpr int kDefaultResultSize = 10;

}  // namespace

IkLocalRetriever::IkLocalRetriever() { scoreBucketsLength(kScoreBuckets); }

IkLocalRetriever::~IkLocalRetriever() = default;

void IkLocalRetriever::info(IkIndexInfo* info) {
  info_ = info;
  sim_.bind(info);
}

void IkLocalRetriever::scoreBucketsLength(int documents) {
  scoreBucketsLength_ = std::clamp(documents, 1, kMaxScoreBuckets);
  scoreBuckets_ = std::make_unique<ScoreBucket[]>(static_cast<std::size_t>(scoreBucketsLength_));
  firstBucket_ = nullptr;
}

// Documents that have a norm; no score is made for others.
int IkLocalRetriever::numDocuments() const {
  return normfile_ != nullptr ? std::max(info_->totalNumChunks, 0) : 0;
}

PrSparseNode* IkLocalRetriever::retrieve(IkRetrieverInput* input, int resultSize) {
  if (info_ == nullptr || indexData_ == nullptr || wordTable_ == nullptr) {
    THROW(Ik, "The retriever has no index to read");
  }
  deleter_ = indexData_->deleter();
  preprocessQuery(input);
  result_ = std::make_unique<PrSparseNodeImpl>(std::min(resultSize, numDocuments()));
  result_->zero();
  computeResult(input, result_.get(), resultSize);
  query_.clear();
  return result_.release();
}

void IkLocalRetriever::computeResult(IkRetrieverInput* input, PrSparseNodeImpl* result,
                                     int resultSize) {
  usedQueryAccel_ = 0;
  input->matches(0);
  const int querySize = query_.querySize();
  const bool plain =
      constraint_ == nullptr && query_.numOperations() == 0 && query_.composites.empty();
  // Without a direction no score means anything.
  if (!query_.hasDirection) return;

  if ((tryQueryAcceleration_ == 0 || tryQueryAcceleration_ == 2) && maxDocs_ == 0 &&
      qaBinder_ != nullptr && querySize < kMaxAcceleratedTerms && plain) {
    const int found = accelerateQuery(input, result, resultSize);
    if (found > 0 && found >= resultSize) {
      usedQueryAccel_ = 1;
      return;
    }
    result->zero();
  }
  if (tryQueryAcceleration_ == 2) return;

  const char* loop = "ranges";
  if (querySize == 1 && plain && maxDocs_ == 0) {
    loop = "single term";
    computeResultSingleTerm(input, result);
  } else if (constraint_ != nullptr || querySize >= kMaxRows || query_.numUnpackers() >= kMaxRows ||
             input->numTerms() >= kMaxRangeTerms || query_.virtualOperands) {
    // Masks know plain words only, so that operations on virtual terms and their
    // members are run here for each document.
    loop = "merge";
    computeResultNormal(input, result);
  } else {
    computeResultSimpleVirtual(input, result);
  }
  if (debug_ != 0) {
    LOG(2, 2,
        "Query: " << loop << ", dimensions " << querySize << ", rows " << query_.numUnpackers()
                  << ", matches " << input->matches());
  }
}

int IkLocalRetriever::accelerateQuery(IkRetrieverInput* input, PrSparseNodeImpl* result,
                                      int resultSize) {
  if (qaBinder_ == nullptr) return 0;
  if (resultSize <= 0) resultSize = kDefaultResultSize;
  FdVector<WmMagicWord> words;
  for (const IkRetrieverQuery::Term& term : query_.terms) {
    if (term.data->elem == nullptr && !term.data->virt) words.push(term.data->word);
  }
  FdRBTree<QaDocData> tree;
  if (qaBinder_->lookup(words, tree, resultSize) == 0) return 0;
  estimateMatchCount(input);
  int added = 0;
  for (auto best = tree.iterator(); best.more(); best.next()) {
    if (!isLive(best.data().doc)) continue;
    result->add(best.data().doc, best.data().score);
    ++added;
  }
  return added;
}

// Terms behind the first are taken to share some documents with it, and a sum that
// nears the collection is bent below its size.
void IkLocalRetriever::estimateMatchCount(IkRetrieverInput* input) {
  long long sum = 0;
  for (std::size_t slot = 0; slot < query_.queryInfo.size(); ++slot) {
    const int df = sim_.InverseIDF(query_.queryInfo[slot].realidf);
    sum += slot == 0 ? df : static_cast<int>(df * 0.95);
  }
  const int documents = info_->totalNumChunks;
  const double ratio = static_cast<double>(sum) / (documents * 0.5);
  if (ratio > 1) sum = documents - static_cast<int>(documents / std::pow(2.0, ratio));
  constexpr long long kMost = std::numeric_limits<int>::max();
  input->matches(static_cast<int>(std::clamp(sum, 0LL, kMost)));
}

void IkLocalRetriever::computeResultSingleTerm(IkRetrieverInput* input, PrSparseNodeImpl* result) {
  sim_.CoordQueryLength(similarityScaling_ == 2 ? 1 : 0);
  const float coord = sim_.coordTable[1];
  const IkQueryInfo& info = query_.queryInfo[0];
  const float value = info.value;
  const float idf = info.idf;
  const unsigned char* const norms = normfile_;
  float minScore = 0;
  int count = 0;
  if (info.unpacker != nullptr) {
    for (IkUnpacker row = *info.unpacker; row.more(); row.read()) {
      const auto freq = static_cast<std::uint16_t>(row.docFreq());
      const float score = sim_.NormalizedTF(freq, norms[row.docNum()]) * value * idf * coord;
      if (!(score > 0) || !isLive(row.docNum())) continue;
      if (score > minScore) {
        result->add(row.docNum(), score);
        minScore = result->min();
      }
      ++count;
    }
  }
  adjustResult(result);
  if (input->matches() == 0) input->matches(count);
}

void IkLocalRetriever::adjustResult(PrSparseNodeImpl* result) {
  if (similarityScaling_ == 0) return;
  result->mapScores([](float score) { return IkScaledAcos(std::min(score, 1.0f)); });
}

// Moves the constraint to its first document from `doc` on, unless it stands there.
// False at its end.
bool IkLocalRetriever::nextConstraint(int doc, int& constraintDoc, float& constraintScore) {
  if (doc <= constraintDoc) return true;
  for (int last = -1;;) {
    constraintDoc = doc;
    // A node that doesn't get any further is at its end.
    if (!constraint_->next(&constraintDoc, &constraintScore) || constraintDoc <= last) break;
    if (constraintDoc >= doc) return true;
    last = constraintDoc;
  }
  constraintDoc = -1;
  return false;
}

}  // namespace vandrelle
