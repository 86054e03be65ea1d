#include "Index/IkMerger.h"

#include <algorithm>
#include <cstring>

#include "Index/IkException.h"
#include "Index/IkProxCreator.h"
#include "Index/IkWordOrder.h"

namespace vandrelle {

IkMerger::IkMerger(int numMO) : mergeData_(static_cast<std::size_t>(numMO)) {}

IkMerger::~IkMerger() = default;

void IkMerger::mergeObject(int i, IkMergeObject* obj) {
  mergeData_[static_cast<std::size_t>(i)].object.reset(obj);
  numDeletedDocs_ += obj->numDeleted();
}

void IkMerger::proxCreator(IkProxCreator* creator) { proxCreator_.reset(creator); }

bool IkMerger::before(int a, int b) const {
  const IkMergeData& first = mergeData_[static_cast<std::size_t>(a)];
  const IkMergeData& second = mergeData_[static_cast<std::size_t>(b)];
  const int order = compareWords(first.prefix, first.word, second.prefix, second.word);
  return order != 0 ? order < 0 : a < b;
}

void IkMerger::advance(int i) {
  IkMergeData& source = mergeData_[static_cast<std::size_t>(i)];
  source.word = source.object->word();
  if (source.word == nullptr) return;
  source.prefix = wordPrefix(source.word);
  heap_.push_back(i);
  std::push_heap(heap_.begin(), heap_.end(), [this](int a, int b) { return before(b, a); });
}

int IkMerger::popHead() {
  std::pop_heap(heap_.begin(), heap_.end(), [this](int a, int b) { return before(b, a); });
  const int head = heap_.back();
  heap_.pop_back();
  return head;
}

void IkMerger::reset() {
  heap_.clear();
  equalWords_.clear();
  for (std::size_t i = 0; i < mergeData_.size(); ++i) {
    mergeData_[i].object->reset();
    advance(static_cast<int>(i));
  }
  next();
}

int IkMerger::next() {
  // The sources that were used for the former word move on. One that holds the
  // same word once more is moved past it: a word has one row.
  for (int i : equalWords_) advance(i);
  while (word_ != nullptr && !heap_.empty()) {
    IkMergeData& head = mergeData_[static_cast<std::size_t>(heap_.front())];
    if (*head.word != *word_) break;
    int ignored = 0;
    head.object->maxElements();
    passedOver_.resize(static_cast<std::size_t>(rowSize_));
    head.object->unpack(passedOver_.data(), rowSize_, &ignored, nullptr);
    head.object->newWordNumber(-1);
    advance(popHead());
  }

  equalWords_.clear();
  if (heap_.empty()) {
    word_ = nullptr;
    return 0;
  }
  const int head = popHead();
  const IkMergeData& first = mergeData_[static_cast<std::size_t>(head)];
  const std::uint64_t prefix = first.prefix;
  std::memcpy(wordbuf_, first.word, static_cast<std::size_t>(first.word->num_bytes()));
  word_ = reinterpret_cast<const WmWord*>(wordbuf_);
  equalWords_.push_back(head);
  while (!heap_.empty()) {
    const IkMergeData& other = mergeData_[static_cast<std::size_t>(heap_.front())];
    if (other.prefix != prefix || *other.word != *word_) break;
    equalWords_.push_back(popHead());
  }
  fillRow();
  return 1;
}

void IkMerger::fillRow() {
  long long totalElements = 0;
  for (int i : equalWords_) {
    const int elements = mergeData_[static_cast<std::size_t>(i)].object->maxElements();
    totalElements += elements < 0 ? rowSize_ : elements;
  }
  // Pairs take two integers each: past half the row's length they might not fit,
  // and below it a rare word is spared the zeroing of a long row.
  int sparseSize = 0;
  if (totalElements > rowSize_ / 2) {
    std::fill(row_, row_ + rowSize_, 0);
    for (int i : equalWords_) {
      mergeData_[static_cast<std::size_t>(i)].object->unpack(row_, rowSize_, &sparseSize,
                                                             proxCreator_.get());
    }
    numPairs_ = -1;
  } else {
    IkDocumentInfo* pairs = reinterpret_cast<IkDocumentInfo*>(row_);
    for (int i : equalWords_) {
      mergeData_[static_cast<std::size_t>(i)].object->unpackSparse(pairs, &sparseSize,
                                                                   proxCreator_.get());
    }
    numPairs_ = sparseSize;
    for (int i = 0; i < sparseSize; ++i) {
      if (static_cast<unsigned>(pairs[i].chunk) >= static_cast<unsigned>(rowSize_)) {
        THROW(Ik, "Read document that is too large while unpacking (" << pairs[i].chunk << ")");
      }
    }
  }
  const int newNum = sparseSize > 0 ? wordNum_++ : -1;
  for (int i : equalWords_) mergeData_[static_cast<std::size_t>(i)].object->newWordNumber(newNum);
}

}  // namespace vandrelle
