#include "Query/QlGatherIterated.h"

#include <algorithm>
#include <iostream>

#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Index/IkTranspose.h"
#include "Query/QlGatherResult.h"
#include "Tool/Random.h"
#include "Word.h"

namespace vandrelle {

QlGatherIterated::QlGatherIterated(IkIndexBinder* index, QlGatherImpl* sub)
    : QlGatherImpl(index), sub_(sub) {}

QlGatherIterated::~QlGatherIterated() = default;

QlGatherResult* QlGatherIterated::gather(const int* docs, int numDocs) {
  sub_->numGroups(numGroups_);
  sub_->threshGroup(threshGroup_);
  std::unique_ptr<QlGatherResult> result(gatherSample(docs, numDocs));
  QlGatherResultArray* clumps = nullptr;  // the result, once dealt out
  Vectors vecs;
  for (int i = 0; i < iterations_; ++i) {
    vecs = makeClumpVectors(result.get(), truncatedSize_);
    std::unique_ptr<QlGatherResultArray> next = vectorClump(vecs, docs, numDocs, transpose_);
    clumps = next.get();
    result = std::move(next);
  }
  if (clumps == nullptr) return result.release();
  // Vectors behind the last group that drew a document go; and without a sample
  // there is a group without a vector.
  const int groups = std::min(clumps->numGroups(), static_cast<int>(vecs.size()));
  for (int group = 0; group < groups; ++group) {
    clumps->summaryVector(group, std::move(vecs[static_cast<std::size_t>(group)]));
  }
  if (debug_ != 0) printWords(clumps);
  return result.release();
}

QlGatherResult* QlGatherIterated::gatherSample(const int* docs, int numDocs) {
  if (firstIterDocuments_ >= numDocs) return sub_->gather(docs, numDocs);
  std::vector<int> sample(docs, docs + numDocs);
  for (int& doc : sample) {
    std::swap(doc, sample[static_cast<std::size_t>(Random::integer(numDocs))]);
  }
  return sub_->gather(sample.data(), std::max(firstIterDocuments_, 0));
}

QlGatherIterated::Vectors QlGatherIterated::makeClumpVectors(QlGatherResult* gr,
                                                             int truncnum) const {
  Vectors vecs;
  for (int group = 0; group < gr->numGroups(); ++group) {
    const int docsInGroup = gr->numDocs(group);
    auto vec = std::make_unique<QlGatherVector>(gvsize_);
    for (int i = 0; i < docsInGroup; ++i) vec->addDoc(transpose_, gr->doc(group, i));
    vec->sortByWord();
    vec->divide(static_cast<float>(docsInGroup));
    if (truncnum != 0 && docsInGroup > truncnum) {
      vec = truncatedVector(gr, group, *vec, truncnum);
    }
    vecs.push_back(std::move(vec));
  }
  return vecs;
}

// The vector is scaled by the whole group, not by the documents that it is made
// of: a large group has a short vector, and draws documents less.
std::unique_ptr<QlGatherVector> QlGatherIterated::truncatedVector(QlGatherResult* gr, int group,
                                                                  const QlGatherVector& whole,
                                                                  int count) const {
  const int docsInGroup = gr->numDocs(group);
  std::vector<float> scores;
  for (int i = 0; i < docsInGroup; ++i) {
    scores.push_back(QlGatherVector::dot(whole, transpose_, gr->doc(group, i)));
  }
  auto vec = std::make_unique<QlGatherVector>(gvsize_);
  for (int taken = 0; taken < count; ++taken) {
    const auto best = std::max_element(scores.begin(), scores.end());
    if (!(*best > 0)) break;
    vec->addDoc(transpose_, gr->doc(group, static_cast<int>(best - scores.begin())));
    *best = 0;
  }
  vec->sortByWord();
  vec->divide(static_cast<float>(docsInGroup));
  return vec;
}

std::unique_ptr<QlGatherResultArray> QlGatherIterated::vectorClump(const Vectors& vecs,
                                                                   const int* docs, int numDocs,
                                                                   IkTranspose* transpose) const {
  std::vector<int> groups;
  std::vector<double> sums(std::max<std::size_t>(vecs.size(), 1));
  std::vector<int> counts(sums.size());
  for (int i = 0; i < numDocs; ++i) {
    std::size_t nearest = 0;
    float best = 0;
    for (std::size_t group = 0; group < vecs.size(); ++group) {
      const float similarity = QlGatherVector::dot(*vecs[group], transpose, docs[i]);
      if (similarity > best) {
        best = similarity;
        nearest = group;
      }
    }
    groups.push_back(static_cast<int>(nearest));
    sums[nearest] += static_cast<double>(best);
    ++counts[nearest];
  }
  if (debug_ != 0) printClumps(vecs, sums, counts);
  return std::make_unique<QlGatherResultArray>(transpose_, wordTable_, groups.data(), docs,
                                               numDocs);
}

void QlGatherIterated::printClumps(const Vectors& vecs, const std::vector<double>& sums,
                                   const std::vector<int>& counts) const {
  for (std::size_t group = 0; group < vecs.size(); ++group) {
    const double mean = counts[group] == 0 ? 0 : sums[group] / counts[group];
    std::cerr << "(: avgdist=" << mean << ")";
    for (std::size_t other = 0; other < vecs.size(); ++other) {
      std::cerr << ' ' << QlGatherVector::dot(*vecs[group], *vecs[other]);
    }
    std::cerr << '\n';
  }
}

void QlGatherIterated::printWords(QlGatherResult* result) const {
  for (int group = 0; group < result->numGroups(); ++group) {
    std::cerr << "group " << group << ", " << result->numDocs(group) << " documents:";
    const std::unique_ptr<FdBag> words(result->summaryWords(group, numWords_));
    const std::unique_ptr<FdIterator> word(words->iterator());
    for (; word->more(); word->next()) {
      std::cerr << ' ' << *static_cast<const WmWord*>(word->key());
    }
    std::cerr << '\n';
  }
}

}  // namespace vandrelle
