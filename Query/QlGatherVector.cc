#include "Query/QlGatherVector.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <numbers>

#include "Index/IkTranspose.h"

namespace vandrelle {

namespace {

// From the cosine of an angle to its share of a right angle, turned round.
float linearSimilarity(float cosine) {
  if (!(cosine > 0)) return cosine;
  const double bounded = std::min(static_cast<double>(cosine), 1.0);
  return static_cast<float>(1 - 2 * std::acos(bounded) / std::numbers::pi);
}

}  // namespace

QlGatherVector::QlGatherVector(int numEntries)
    : numEntries_(numEntries),
      orig_entries_(std::make_unique<Entry[]>(static_cast<std::size_t>(numEntries))),
      entries_(orig_entries_.get()) {}

QlGatherVector::~QlGatherVector() {
  if (entries_ != orig_entries_.get()) {
    std::cerr << "Something happened to entries_! in QlGatherVector\n";
  }
}

void QlGatherVector::addWord(int word, float score) {
  Entry* lowest = nullptr;
  for (Entry* entry = entries_; entry != entries_ + numEntries_; ++entry) {
    if (entry->word == word && entry->score != 0) entry->score += score;
    if (lowest == nullptr || entry->score < lowest->score) lowest = entry;
  }
  if (lowest != nullptr && lowest->score <= score) *lowest = Entry{word, score};
}

void QlGatherVector::addDoc(IkTranspose* transpose, int doc) {
  for (int i = 0; i < transpose->digestSize(); ++i) {
    const float score = transpose->wordScore(doc, i);
    if (score != 0) addWord(transpose->wordNum(doc, i), score);
  }
}

void QlGatherVector::divide(float divisor) {
  for (Entry* entry = entries_; entry != entries_ + numEntries_; ++entry) {
    if (entry->score > 0) entry->score /= divisor;
  }
}

void QlGatherVector::clear() { std::fill_n(entries_, numEntries_, Entry{0, 0}); }

void QlGatherVector::copyFrom(IkTranspose* transpose, int doc) {
  clear();
  const int count = std::min(numEntries_, transpose->digestSize());
  for (int i = 0; i < count; ++i) {
    entries_[i] = Entry{transpose->wordNum(doc, i), transpose->wordScore(doc, i)};
  }
  sortByWord();
}

void QlGatherVector::sortByWord() {
  std::stable_sort(entries_, entries_ + numEntries_, [](const Entry& a, const Entry& b) {
    if (a.score == 0 || b.score == 0) return a.score != 0 && b.score == 0;
    return a.word < b.word;
  });
}

void QlGatherVector::sortByScore() {
  std::stable_sort(entries_, entries_ + numEntries_,
                   [](const Entry& a, const Entry& b) { return a.score > b.score; });
}

float QlGatherVector::dot(const QlGatherVector& a, const QlGatherVector& b) {
  float sum = 0;
  int i = 0;
  int j = 0;
  while (i < a.numEntries_ && j < b.numEntries_) {
    const Entry& first = a.entries_[i];
    const Entry& second = b.entries_[j];
    if (first.score == 0 || second.score == 0) break;
    if (first.word == second.word) sum += first.score * second.score;
    i += first.word <= second.word;
    j += second.word <= first.word;
  }
  return linearSimilarity(sum);
}

float QlGatherVector::dot(const QlGatherVector& a, IkTranspose* transpose, int doc) {
  const int digestSize = transpose->digestSize();
  // The empty entries of a digest stand first.
  int j = 0;
  while (j < digestSize && transpose->wordValue(doc, j) == 0) ++j;
  float sum = 0;
  int i = 0;
  while (i < a.numEntries_ && j < digestSize) {
    const Entry& first = a.entries_[i];
    const int word = transpose->wordNum(doc, j);
    const float score = transpose->wordScore(doc, j);
    if (first.score == 0 || score == 0) break;
    if (first.word == word) sum += first.score * score;
    i += first.word <= word;
    j += word <= first.word;
  }
  return linearSimilarity(sum);
}

}  // namespace vandrelle
