// Typed views of untyped bags and streams, one per use. They add no storage beyond
// a pointer and the ownership flag, and no virtual call beyond the bag's.
//
//   S  a NUL-terminated string (its size counts the NUL)
//   C  a value of a plain type, by copy
//   W  a word
//
// The first letter is the key, the second the data; FdSBag, FdCBag, FdSStream and
// FdWStream have keys alone.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "Fun/FdBag.h"
#include "Fun/FdPair.h"
#include "Fun/FdStream.h"

namespace vandrelle {

class WmWord;

// Says whether the wrapper destroys what it encloses together with itself.
class FdWrapper {
 public:
  explicit FdWrapper(int ownEnclosed) : ownEnclosed_(ownEnclosed) {}
  FdWrapper(const FdWrapper&) = delete;
  FdWrapper& operator=(const FdWrapper&) = delete;

  int ownEnclosed() const { return ownEnclosed_; }
  void ownEnclosed(int own) { ownEnclosed_ = own; }

 private:
  int ownEnclosed_;
};

// Owns its bag unless told otherwise.
class FdBagWrapper : public FdWrapper {
 public:
  explicit FdBagWrapper(FdBag* bag, int ownEnclosed = 1) : FdWrapper(ownEnclosed), bag_(bag) {}
  ~FdBagWrapper() {
    if (ownEnclosed()) delete bag_;
  }

  FdBag* bag() const { return bag_; }
  bool isEmpty() const { return bag_->isEmpty(); }
  int numElements() const { return bag_->numElements(); }
  // Owned by the caller; give it to a stream wrapper.
  FdIterator* iterator() const { return bag_->iterator(); }

 protected:
  static int stringSize(const char* text) { return static_cast<int>(std::strlen(text)) + 1; }

  // What is stored shorter than a D leaves the rest of `data` as it was.
  template <typename D>
  bool findValue(const void* key, int keySize, D& data) const {
    static_assert(std::is_trivially_copyable_v<D>);
    int size = static_cast<int>(sizeof(D));
    return bag_->find(key, keySize, &data, &size);
  }

  FdBag* bag_;
};

class FdSBag : public FdBagWrapper {
 public:
  using FdBagWrapper::FdBagWrapper;

  void insert(const char* key) { bag_->insert(key, stringSize(key), nullptr, 0); }
  bool find(const char* key) const { return bag_->find(key, stringSize(key), nullptr, nullptr); }
  bool remove(const char* key) { return bag_->remove(key, stringSize(key), nullptr, nullptr); }
};

template <typename D>
class FdSCBag : public FdBagWrapper {
 public:
  using FdBagWrapper::FdBagWrapper;

  void insert(const char* key, const D& data) {
    bag_->insert(key, stringSize(key), &data, static_cast<int>(sizeof(D)));
  }
  bool find(const char* key, D& data) const { return findValue(key, stringSize(key), data); }
  bool remove(const char* key) { return bag_->remove(key, stringSize(key), nullptr, nullptr); }
};

template <typename K>
class FdCBag : public FdBagWrapper {
  static_assert(std::is_trivially_copyable_v<K>);

 public:
  using FdBagWrapper::FdBagWrapper;

  void insert(const K& key) { bag_->insert(&key, static_cast<int>(sizeof(K)), nullptr, 0); }
  bool find(const K& key) const {
    return bag_->find(&key, static_cast<int>(sizeof(K)), nullptr, nullptr);
  }
  bool remove(const K& key) {
    return bag_->remove(&key, static_cast<int>(sizeof(K)), nullptr, nullptr);
  }
};

template <typename K, typename D>
class FdCCBag : public FdBagWrapper {
  static_assert(std::is_trivially_copyable_v<K>);

 public:
  using FdBagWrapper::FdBagWrapper;

  void insert(const K& key, const D& data) {
    bag_->insert(&key, static_cast<int>(sizeof(K)), &data, static_cast<int>(sizeof(D)));
  }
  bool find(const K& key, D& data) const {
    return findValue(&key, static_cast<int>(sizeof(K)), data);
  }
  bool remove(const K& key) {
    return bag_->remove(&key, static_cast<int>(sizeof(K)), nullptr, nullptr);
  }
};

template <typename K>
class FdCSBag : public FdBagWrapper {
  static_assert(std::is_trivially_copyable_v<K>);

 public:
  using FdBagWrapper::FdBagWrapper;

  void insert(const K& key, const char* text) {
    bag_->insert(&key, static_cast<int>(sizeof(K)), text, stringSize(text));
  }
  // A copy of the text, to be freed by the caller with delete[]; null if absent.
  char* find(const K& key) const {
    char text[FdPair::kMaxBytes + 1];
    int size = FdPair::kMaxBytes;
    if (!bag_->find(&key, static_cast<int>(sizeof(K)), text, &size)) return nullptr;
    text[size < FdPair::kMaxBytes ? size : FdPair::kMaxBytes] = '\0';
    const std::size_t bytes = std::strlen(text) + 1;
    char* copy = new char[bytes];
    std::memcpy(copy, text, bytes);
    return copy;
  }
  bool remove(const K& key) {
    return bag_->remove(&key, static_cast<int>(sizeof(K)), nullptr, nullptr);
  }
};

// Owns its stream unless told otherwise.
class FdStreamWrapper : public FdWrapper {
 public:
  explicit FdStreamWrapper(FdStream* stream, int ownEnclosed = 1)
      : FdWrapper(ownEnclosed), stream_(stream) {}
  ~FdStreamWrapper() {
    if (ownEnclosed()) delete stream_;
  }

  FdStream* stream() const { return stream_; }
  void reset() { stream_->reset(); }
  bool more() { return stream_->more(); }
  int next() { return stream_->next(); }

 protected:
  FdStream* stream_;
};

// The pointers that key() gives are the stream's, valid until next() or reset().
class FdSStream : public FdStreamWrapper {
 public:
  using FdStreamWrapper::FdStreamWrapper;
  char* key() { return static_cast<char*>(stream_->key()); }
};

class FdWStream : public FdStreamWrapper {
 public:
  using FdStreamWrapper::FdStreamWrapper;
  WmWord* key() { return reinterpret_cast<WmWord*>(stream_->key()); }
};

template <typename D>
class FdSCStream : public FdStreamWrapper {
 public:
  using FdStreamWrapper::FdStreamWrapper;
  char* key() { return static_cast<char*>(stream_->key()); }
  D data() {
    D value{};
    int size = static_cast<int>(sizeof(D));
    stream_->data(&value, &size);
    return value;
  }
};

template <typename K, typename D>
class FdCCStream : public FdStreamWrapper {
 public:
  using FdStreamWrapper::FdStreamWrapper;
  K key() {
    K value{};
    int size = static_cast<int>(sizeof(K));
    stream_->key(&value, &size);
    return value;
  }
  D data() {
    D value{};
    int size = static_cast<int>(sizeof(D));
    stream_->data(&value, &size);
    return value;
  }
};

}  // namespace vandrelle
