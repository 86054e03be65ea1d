// A singly linked list of pairs: inserted at the head, read from the head.
//
// Equal keys stand side by side (a subclass may replace instead). Lookups walk
// the list; a table (Fun/FdTable.h) is the bag for many keys. FdQueue inserts at
// the tail.
#pragma once

#include "Fun/FdBag.h"
#include "Fun/FdPair.h"
#include "Fun/FdStream.h"

namespace vandrelle {

class FdStack : public FdList {
 public:
  FdStack() = default;
  ~FdStack() override;
  FdStack(const FdStack&) = delete;
  FdStack& operator=(const FdStack&) = delete;

  bool isEmpty() override { return head_ == nullptr; }
  // Walks the list.
  int numElements() override;
  void insert(const void* key, int keySize, const void* data, int dataSize) override;
  bool remove(const void* key, int keySize, void* data, int* dataSize) override;
  bool find(const void* key, int keySize, void* data, int* dataSize) override;
  FdIterator* iterator() override;

  // The written form keeps the order from head to tail: pairs as FdPair writes
  // them, then four zero bytes. read() puts what it reads behind what is here and
  // stops without a word where the stream ends early.
  void read(std::istream& is) override;
  void write(std::ostream& os) override;

  // Reads at most `n` pairs; how many came. Fewer than `n` means the end.
  int readSome(std::istream& is, int n);

  // Takes the head out and copies it, each part as find() copies data. 0 if the
  // list is empty, else 1.
  int getnext(void* key, int* keySize, void* data, int* dataSize);

  // By key, with the sizes rounded up to whole words. Not reentrant: `compare` must
  // not sort a list itself.
  void sort(FdSortFunction compare, int) override;

  // The same by whole pairs. insertPair() takes ownership; getnextPair() and
  // findPair() with `remove` give it to the caller; peekPair() is the head.
  virtual void insertPair(FdPair* pair);
  virtual FdPair* getnextPair();
  virtual FdPair* findPair(const void* key, int keySize, bool remove);
  virtual FdPair* peekPair() { return head_; }
  virtual FdPair* newPair(const void* key, int keySize, const void* data, int dataSize);
  virtual void deletePair(FdPair* pair);

 protected:
  // insert() with the news whether the list grew.
  bool put(const void* key, int keySize, const void* data, int dataSize);
  bool isEqualImpl(const void* key, int keySize, const FdPair* pair);
  // First match from the head, unlinked if `remove` is set, or null.
  FdPair* frImpl(const void* key, int keySize, bool remove);

  // `pair` has been unlinked behind `previous`, or, if it is null, `previous` is the
  // last pair of a list linked anew.
  virtual void fixupTail(FdPair* previous, FdPair* pair);

  FdPair* head_ = nullptr;

 private:
  friend class FdIteratorImpl;
  friend class FdTableIterator;
};

// Walks a list from the head.
class FdIteratorImpl : public FdIterator {
 public:
  explicit FdIteratorImpl(FdStack* list) : list_(list) { FdIteratorImpl::reset(); }

  void reset() override { pair_ = list_->head_; }
  bool more() override { return pair_ != nullptr; }
  int next() override {
    pair_ = pair_->next();
    return pair_ != nullptr;
  }
  void* key() override { return pair_->key(); }
  int keySize() override { return pair_->keySize(); }
  void key(void* place, int* size) override { pair_->copyKey(place, size); }
  void* data() override { return pair_->dataSize() > 0 ? pair_->data() : nullptr; }
  int dataSize() override { return pair_->dataSize(); }
  void data(void* place, int* size) override { pair_->copyData(place, size); }

 private:
  FdStack* list_;
  FdPair* pair_ = nullptr;
};

}  // namespace vandrelle
