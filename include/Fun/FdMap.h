// A typed hash map with chains, for keys and data that are values.
//
//   FdSimpleMap<K, D>   operator[] on a missing key gives null
//   FdAutoMap<K, D>     operator[] on a missing key inserts the default
//
// Policy is static, in a Config class. The default hashes the bytes of the key as
// it lies in memory, so a key type with padding or with pointers to its text needs
// its own FdMapHash. Entries stay where they are until they are removed: pointers
// to data survive insertions.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <utility>

#include "Fun/FdException.h"

namespace vandrelle {

// The bucket of a key of `bytes` bytes: XOR of its bytes in four lanes, folded by
// the number of significant bits of `numBuckets`.
inline int FdMapHashImpl(const void* key, int bytes, int numBuckets) {
  if (numBuckets <= 0) THROW(Fd, "A map needs at least one bucket.");
  const auto* letters = static_cast<const unsigned char*>(key);
  std::uint32_t hashed = 0;
  for (int i = 0; i < bytes; ++i) {
    hashed ^= static_cast<std::uint32_t>(letters[i]) << (i % 4 * 8);
  }
  const int bits = std::bit_width(static_cast<unsigned>(numBuckets));
  for (int shift = bits; shift < 32; shift += bits) hashed ^= hashed >> shift;
  return static_cast<int>(hashed % static_cast<unsigned>(numBuckets));
}

// Specialised by key types whose bytes are not their value.
template <typename K>
struct FdMapHash {
  static int hash(const K& key, int numBuckets) {
    return FdMapHashImpl(&key, static_cast<int>(sizeof(K)), numBuckets);
  }
};

template <typename K, typename D, int AutoInstantiate>
struct FdMapConfig {
  static int hash(const K& key, int numBuckets) { return FdMapHash<K>::hash(key, numBuckets); }
  static D defaultData() { return D{}; }
  static bool autoInstantiate() { return AutoInstantiate != 0; }
  static bool allowDuplicates() { return false; }
  // The number of buckets to go on with, or 0 to stay.
  static int rehash(int numElements, int numBuckets) {
    return numElements > numBuckets * 4 ? numBuckets * 2 : 0;
  }
};

template <typename K, typename D>
struct FdMapPair {
  K key;
  D data;
  FdMapPair* next;
};

template <typename K, typename D, typename Config>
class FdMapIterator;

template <typename K, typename D, typename Config = FdMapConfig<K, D, 0>>
class FdMap {
 public:
  using Pair = FdMapPair<K, D>;

  FdMap() : FdMap(4) {}
  // Starts with `numBuckets` buckets, at least 1.
  explicit FdMap(int numBuckets) : numBuckets_(numBuckets) {
    if (numBuckets <= 0) THROW(Fd, "A map needs at least one bucket.");
    buckets_ = new Pair*[static_cast<std::size_t>(numBuckets)]();
  }
  ~FdMap() {
    removeAll();
    delete[] buckets_;
  }
  FdMap(const FdMap&) = delete;
  FdMap& operator=(const FdMap&) = delete;

  // Replaces the data of a key that is there.
  void insert(const K& key, const D& data) {
    grow();
    if (!Config::allowDuplicates()) {
      if (Pair* pair = pairOf(key)) {
        pair->data = data;
        return;
      }
    }
    addPair(key, data);
  }

  bool find(const K& key, D& data) const {
    const Pair* pair = pairOf(key);
    if (pair != nullptr) data = pair->data;
    return pair != nullptr;
  }
  // The data in place, or null.
  D* find(const K& key) const {
    Pair* pair = pairOf(key);
    return pair != nullptr ? &pair->data : nullptr;
  }
  bool contains(const K& key) const { return pairOf(key) != nullptr; }

  bool remove(const K& key, D& data) {
    Pair* pair = unlink(key);
    if (pair == nullptr) return false;
    data = std::move(pair->data);
    delete pair;
    return true;
  }
  bool remove(const K& key) {
    Pair* pair = unlink(key);
    delete pair;
    return pair != nullptr;
  }
  void removeAll() {
    for (int i = 0; i < numBuckets_; ++i) {
      while (Pair* pair = buckets_[i]) {
        buckets_[i] = pair->next;
        delete pair;
      }
    }
    numElements_ = 0;
  }

  // The data in place. A missing key gives null, or is inserted with the default.
  D* operator[](const K& key) {
    if (Pair* pair = pairOf(key)) return &pair->data;
    if (!Config::autoInstantiate()) return nullptr;
    grow();
    return &addPair(key, Config::defaultData())->data;
  }

  // A walk over all pairs, bucket by bucket. The map must stay unchanged.
  FdMapIterator<K, D, Config> iterator() const { return FdMapIterator<K, D, Config>(this); }

  int numElements() const { return numElements_; }
  int size() const { return numElements_; }
  int numBuckets() const { return numBuckets_; }

  // For debugging: the number of pairs in each bucket.
  void dump(std::ostream& os) const {
    os << numElements_ << " elements in " << numBuckets_ << " buckets:";
    for (int i = 0; i < numBuckets_; ++i) {
      int length = 0;
      for (const Pair* pair = buckets_[i]; pair != nullptr; pair = pair->next) ++length;
      os << ' ' << length;
    }
    os << '\n';
  }

 private:
  friend class FdMapIterator<K, D, Config>;

  Pair* pairOf(const K& key) const {
    Pair* pair = buckets_[Config::hash(key, numBuckets_)];
    while (pair != nullptr && !(pair->key == key)) pair = pair->next;
    return pair;
  }

  Pair* addPair(const K& key, const D& data) {
    Pair*& head = buckets_[Config::hash(key, numBuckets_)];
    head = new Pair{key, data, head};
    ++numElements_;
    return head;
  }

  Pair* unlink(const K& key) {
    Pair** link = &buckets_[Config::hash(key, numBuckets_)];
    while (*link != nullptr && !((*link)->key == key)) link = &(*link)->next;
    Pair* pair = *link;
    if (pair != nullptr) {
      *link = pair->next;
      --numElements_;
    }
    return pair;
  }

  // Pairs move from the front of the old chains to the front of the new ones, which
  // turns the order within a chain round.
  void grow() {
    const int wanted = Config::rehash(numElements_, numBuckets_);
    if (wanted <= 0) return;
    auto** buckets = new Pair*[static_cast<std::size_t>(wanted)]();
    for (int i = 0; i < numBuckets_; ++i) {
      while (Pair* pair = buckets_[i]) {
        buckets_[i] = pair->next;
        Pair*& head = buckets[Config::hash(pair->key, wanted)];
        pair->next = head;
        head = pair;
      }
    }
    delete[] buckets_;
    buckets_ = buckets;
    numBuckets_ = wanted;
  }

  int numElements_ = 0;
  int numBuckets_;
  Pair** buckets_ = nullptr;
  [[no_unique_address]] Config config_;
};

template <typename K, typename D, typename Config>
class FdMapIterator {
 public:
  explicit FdMapIterator(const FdMap<K, D, Config>* map) : map_(map) { reset(); }

  void reset() {
    bucket_ = 0;
    pair_ = map_->buckets_[0];
    skipEmpty();
  }
  bool more() const { return pair_ != nullptr; }
  void next() {
    pair_ = pair_->next;
    skipEmpty();
  }
  const K& key() const { return pair_->key; }
  D& data() const { return pair_->data; }

 private:
  void skipEmpty() {
    while (pair_ == nullptr && ++bucket_ < map_->numBuckets_) pair_ = map_->buckets_[bucket_];
  }

  const FdMap<K, D, Config>* map_;
  int bucket_ = 0;
  FdMapPair<K, D>* pair_ = nullptr;
};

template <typename K, typename D>
using FdSimpleMap = FdMap<K, D, FdMapConfig<K, D, 0>>;
template <typename K, typename D>
using FdAutoMap = FdMap<K, D, FdMapConfig<K, D, 1>>;

}  // namespace vandrelle
