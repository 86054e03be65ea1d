// A disk table: the bag interface on a Berkeley DB file, one value a key. Made by
// FdDBMManager. Keys and data may be of any size.
#pragma once

#include <string>

#include "Fun/FdBag.h"
#include "Fun/FdStream.h"

struct __db;

namespace vandrelle {

class FdBDBMTable : public FdBag {
 public:
  // Takes the open database over; the destructor closes it. `name` is the file's.
  FdBDBMTable(__db* table, const char* name) : table_(table), name_(name) {}
  ~FdBDBMTable() override;
  FdBDBMTable(const FdBDBMTable&) = delete;
  FdBDBMTable& operator=(const FdBDBMTable&) = delete;

  // All throw _Exception_DBM when the library reports an error. isEmpty() moves the
  // database's place, as a walk does (see FdBDBMIterator).
  bool isEmpty() override;
  // Replaces the value of a key that is there.
  void insert(const void* key, int keySize, const void* data, int dataSize) override;
  bool remove(const void* key, int keySize, void* data, int* dataSize) override;
  bool find(const void* key, int keySize, void* data, int* dataSize) override;
  FdIterator* iterator() override;

  // Writes everything to the file. A table that is to stay needs it before it goes:
  // the destructor has nobody to tell that the disk is full.
  void flush();

 private:
  friend class FdBDBMIterator;

  bool removeImpl(const void* key, int keySize, void* data, int* dataSize, bool remove);

  __db* table_;
  std::string name_;
};

// Walks a disk table in the order of the file: by key for a B-tree. A database has
// one place to go on from, so two walks over one table at a time disturb each other;
// lookups do not.
class FdBDBMIterator : public FdIterator {
 public:
  explicit FdBDBMIterator(FdBDBMTable* table);

  void reset() override;
  bool more() override { return more_ != 0; }
  int next() override;
  using FdStream::data;
  using FdStream::key;
  void* key() override { return key_.data(); }
  int keySize() override { return static_cast<int>(key_.size()); }
  void* data() override { return data_.data(); }
  int dataSize() override { return static_cast<int>(data_.size()); }
  int keyType() override { return 0; }
  int dataType() override { return 0; }

  // All pairs of the table in a new queue, owned by the caller. The walk is at its end
  // then.
  FdList* list();

 private:
  void move(unsigned how);
  void checkResult(int result, const char* text);

  FdBDBMTable* table_;
  // Copies: the library's own bytes are good only until its next call.
  std::string key_;
  std::string data_;
  int more_ = 0;
};

}  // namespace vandrelle
