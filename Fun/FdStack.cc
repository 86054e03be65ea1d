#include "Fun/FdStack.h"

#include <cstdlib>
#include <limits>
#include <vector>

#include "Fun/FdException.h"

namespace vandrelle {

namespace {

FdSortFunction sortFunction = nullptr;

int comparePairs(const void* a, const void* b) {
  const FdPair* first = *static_cast<FdPair* const*>(a);
  const FdPair* second = *static_cast<FdPair* const*>(b);
  return sortFunction(first->key(), first->keySize(), second->key(), second->keySize());
}

}  // namespace

FdStack::~FdStack() {
  while (head_ != nullptr) {
    FdPair* pair = head_;
    head_ = pair->next();
    FdPair::destroy(pair);
  }
}

int FdStack::numElements() {
  int count = 0;
  for (const FdPair* pair = head_; pair != nullptr; pair = pair->next()) ++count;
  return count;
}

void FdStack::insert(const void* key, int keySize, const void* data, int dataSize) {
  put(key, keySize, data, dataSize);
}

bool FdStack::put(const void* key, int keySize, const void* data, int dataSize) {
  FdPair* old = allowDuplicatesPolicy() == 0 ? findPair(key, keySize, false) : nullptr;
  const bool fits = old != nullptr && old->dataSize() == dataSize;
  // The new pair is made before the old one goes: that may throw, and `data` may
  // point into the old one.
  FdPair* pair = fits ? old : newPair(key, keySize, data, dataSize);
  if (old != nullptr) findPair(key, keySize, true);
  if (fits) FdPair::setData(old, data, dataSize);
  insertPair(pair);
  if (old != nullptr && !fits) deletePair(old);
  return old == nullptr;
}

bool FdStack::remove(const void* key, int keySize, void* data, int* dataSize) {
  FdPair* pair = findPair(key, keySize, true);
  if (pair == nullptr) return false;
  pair->copyData(data, dataSize);
  deletePair(pair);
  return true;
}

bool FdStack::find(const void* key, int keySize, void* data, int* dataSize) {
  const FdPair* pair = findPair(key, keySize, false);
  if (pair == nullptr) return false;
  pair->copyData(data, dataSize);
  return true;
}

FdIterator* FdStack::iterator() { return new FdIteratorImpl(this); }

void FdStack::read(std::istream& is) { readSome(is, std::numeric_limits<int>::max()); }

int FdStack::readSome(std::istream& is, int n) {
  // The tail is found once, then carried along: a list has no pointer to it.
  FdPair* last = head_;
  while (last != nullptr && last->next() != nullptr) last = last->next();
  int count = 0;
  while (count < n) {
    FdPair* pair = FdPair::read(is, nullptr);
    if (pair == nullptr) break;
    pair->next(nullptr);
    if (last == nullptr) {
      head_ = pair;
    } else {
      last->next(pair);
    }
    last = pair;
    ++count;
  }
  if (count > 0) fixupTail(last, nullptr);
  return count;
}

void FdStack::write(std::ostream& os) {
  for (const FdPair* pair = head_; pair != nullptr; pair = pair->next()) FdPair::write(os, pair);
  FdPair::writeEnd(os);
}

int FdStack::getnext(void* key, int* keySize, void* data, int* dataSize) {
  FdPair* pair = getnextPair();
  if (pair == nullptr) return 0;
  pair->copyKey(key, keySize);
  pair->copyData(data, dataSize);
  deletePair(pair);
  return 1;
}

void FdStack::sort(FdSortFunction compare, int) {
  if (head_ == nullptr) return;
  std::vector<FdPair*> pairs;
  for (FdPair* pair = head_; pair != nullptr; pair = pair->next()) pairs.push_back(pair);
  sortFunction = compare;
  std::qsort(pairs.data(), pairs.size(), sizeof pairs[0], comparePairs);
  for (std::size_t i = 0; i + 1 < pairs.size(); ++i) pairs[i]->next(pairs[i + 1]);
  pairs.back()->next(nullptr);
  head_ = pairs.front();
  fixupTail(pairs.back(), nullptr);
}

void FdStack::insertPair(FdPair* pair) {
  pair->next(head_);
  head_ = pair;
}

FdPair* FdStack::getnextPair() {
  FdPair* pair = head_;
  if (pair != nullptr) {
    head_ = pair->next();
    fixupTail(nullptr, pair);
    pair->next(nullptr);
  }
  return pair;
}

FdPair* FdStack::findPair(const void* key, int keySize, bool remove) {
  return frImpl(key, keySize, remove);
}

FdPair* FdStack::newPair(const void* key, int keySize, const void* data, int dataSize) {
  const int hashed = key != nullptr ? hash(key, keySize) : 0;
  return FdPair::make(hashed, key, keySize, data, dataSize);
}

void FdStack::deletePair(FdPair* pair) { FdPair::destroy(pair); }

bool FdStack::isEqualImpl(const void* key, int keySize, const FdPair* pair) {
  if (key == nullptr || pair == nullptr) return false;
  if (pair->info().keyWords() != (keySize + 3) / 4) return false;
  if (pair->info().hash() != hash(key, keySize)) return false;
  return isEqual(key, pair->key(), keySize);
}

FdPair* FdStack::frImpl(const void* key, int keySize, bool remove) {
  FdPair* previous = nullptr;
  for (FdPair* pair = head_; pair != nullptr; previous = pair, pair = pair->next()) {
    if (!isEqualImpl(key, keySize, pair)) continue;
    if (remove) {
      if (previous == nullptr) {
        head_ = pair->next();
      } else {
        previous->next(pair->next());
      }
      fixupTail(previous, pair);
      pair->next(nullptr);
    }
    return pair;
  }
  return nullptr;
}

void FdStack::fixupTail(FdPair*, FdPair*) {}

}  // namespace vandrelle
