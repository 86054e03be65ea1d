// The hash bag in memory: a fixed number of buckets, each a short list, and one
// pair a key: an insertion with a key that is there replaces its data.
//
// The hash has 12 bits, so more than 4096 buckets would stay empty.
#pragma once

#include <memory>

#include "Fun/FdStack.h"

namespace vandrelle {

// The list of one bucket. A replaced pair moves to the head.
class FdBucket : public FdStack {
 public:
  // As insert(), with the news whether the bucket grew.
  bool replace(const void* key, int keySize, const void* data, int dataSize) {
    return put(key, keySize, data, dataSize);
  }

 protected:
  int allowDuplicatesPolicy() override { return 0; }
};

class FdTable : public FdBag {
 public:
  FdTable();  // 16 buckets
  // Half of the largest power of two that is not above `hint` nor above 4096: 16
  // gives 8 buckets, 8192 gives 2048. `hint` is at least 2.
  explicit FdTable(int hint);
  ~FdTable() override;

  bool isEmpty() override { return count_ == 0; }
  int numElements() override { return count_; }
  void insert(const void* key, int keySize, const void* data, int dataSize) override;
  bool remove(const void* key, int keySize, void* data, int* dataSize) override;
  bool find(const void* key, int keySize, void* data, int* dataSize) override;
  FdIterator* iterator() override;

  // The written form is one run of pairs in bucket order (see FdPair::write). The
  // reader depends on no order and counts the hashes anew; it stops without a word
  // where the stream ends early.
  void read(std::istream& is) override;
  void write(std::ostream& os) override;

  // Takes a pair out of the first bucket that has one; the caller owns it. Null if
  // the table is empty.
  FdPair* getnextPair();

  int numBuckets() const { return numBuckets_; }

 private:
  friend class FdTableIterator;

  FdBucket& bucketOf(const void* key, int keySize);

  int count_ = 0;  // insertions less removals
  int numBuckets_;
  std::unique_ptr<FdBucket[]> buckets_;
};

// Walks the buckets from 0 up, each in list order.
class FdTableIterator : public FdIterator {
 public:
  explicit FdTableIterator(FdTable* table) : table_(table) { FdTableIterator::reset(); }

  void reset() override;
  bool more() override { return pair_ != nullptr; }
  int next() override;
  void* key() override { return pair_->key(); }
  int keySize() override { return pair_->keySize(); }
  void key(void* place, int* size) override { pair_->copyKey(place, size); }
  void* data() override { return pair_->dataSize() > 0 ? pair_->data() : nullptr; }
  int dataSize() override { return pair_->dataSize(); }
  void data(void* place, int* size) override { pair_->copyData(place, size); }

 private:
  void skipEmpty();

  FdTable* table_;
  int bucket_ = 0;
  FdPair* pair_ = nullptr;
};

}  // namespace vandrelle
