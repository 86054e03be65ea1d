#include "Query/QlGatherResult.h"

#include <algorithm>

#include "Fun/Fd.h"
#include "Index/IkWordTable.h"
#include "Word.h"

namespace vandrelle {

namespace {

struct NearDocument {
  int doc;
  float score;
};

// Enters a document in a list of at most `limit`, behind those that are as near.
void insertSorted(std::vector<NearDocument>* list, std::size_t limit, NearDocument added) {
  std::size_t place = list->size();
  while (place > 0 && (*list)[place - 1].score < added.score) --place;
  if (place >= limit) return;
  if (list->size() == limit) list->pop_back();
  list->insert(list->begin() + static_cast<std::ptrdiff_t>(place), added);
}

}  // namespace

FdBag* QlGatherResultImpl::summaryWords(int group, int n) {
  std::unique_ptr<FdBag> words(Fd::Queue());
  QlGatherVector* vector = summaryVector(group);
  if (vector == nullptr) return words.release();
  vector->sortByScore();
  const int count = std::min(n, vector->numEntries());
  for (int i = 0; i < count && vector->score(i) > 0; ++i) {
    const WmWord* word = wordTable_->word(vector->word(i));
    if (word == nullptr) continue;
    const float score = vector->score(i);
    words->insert(word, word->num_bytes(), &score, sizeof score);
  }
  vector->sortByWord();
  return words.release();
}

FdBag* QlGatherResultImpl::summaryDocs(int group, int n) {
  std::unique_ptr<FdBag> docs(Fd::Queue());
  const QlGatherVector* vector = summaryVector(group);
  if (vector == nullptr || n <= 0) return docs.release();
  std::vector<NearDocument> nearest;
  const int count = numDocs(group);
  for (int i = 0; i < count; ++i) {
    const int number = doc(group, i);
    insertSorted(&nearest, static_cast<std::size_t>(n),
                 NearDocument{number, QlGatherVector::dot(*vector, transpose_, number)});
  }
  for (const NearDocument& near : nearest) {
    if (near.score > 0) docs->insert(&near.doc, sizeof near.doc, &near.score, sizeof near.score);
  }
  return docs.release();
}

QlGatherResultArray::QlGatherResultArray(IkTranspose* transpose, IkWordTable* wordTable,
                                         const int* groupList, const int* docList, int numDocs)
    : QlGatherResultImpl(transpose, wordTable), numGroups_(0) {
  bool ungrouped = false;
  for (int i = 0; i < numDocs; ++i) {
    numGroups_ = std::max(numGroups_, groupList[i] + 1);
    ungrouped = ungrouped || groupList[i] < 0;
  }
  const int last = numGroups_;
  if (ungrouped) ++numGroups_;
  group_.resize(static_cast<std::size_t>(numGroups_));
  sumvecs_.resize(static_cast<std::size_t>(numGroups_));
  for (int i = 0; i < numDocs; ++i) {
    const int group = groupList[i] < 0 ? last : groupList[i];
    group_[static_cast<std::size_t>(group)].push_back(docList[i]);
  }
}

QlGatherVector* QlGatherResultArrayAuto::summaryVector(int group) {
  std::unique_ptr<QlGatherVector>& kept = vectorOf(group);
  if (kept == nullptr) {
    auto vector = std::make_unique<QlGatherVector>(vectorSize_);
    const int count = numDocs(group);
    for (int i = 0; i < count; ++i) vector->addDoc(transpose_, doc(group, i));
    vector->divide(static_cast<float>(count));
    vector->sortByWord();
    kept = std::move(vector);
  }
  return kept.get();
}

}  // namespace vandrelle
