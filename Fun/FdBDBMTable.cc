#include "Fun/FdBDBMTable.h"

#include <db_185.h>

#include <algorithm>
#include <cstring>

#include "Fun/Fd.h"
#include "Fun/FdException.h"

namespace vandrelle {

namespace {

DBT thing(const void* data, int size) {
  DBT dbt;
  dbt.data = const_cast<void*>(data);
  dbt.size = static_cast<decltype(dbt.size)>(size > 0 ? size : 0);
  return dbt;
}

}  // namespace

FdBDBMTable::~FdBDBMTable() { table_->close(table_); }

bool FdBDBMTable::isEmpty() { return !FdBDBMIterator(this).more(); }

void FdBDBMTable::insert(const void* key, int keySize, const void* data, int dataSize) {
  DBT keyThing = thing(key, keySize);
  DBT dataThing = thing(data != nullptr ? data : "", data != nullptr ? dataSize : 0);
  if (table_->put(table_, &keyThing, &dataThing, 0) != 0) {
    THROW(DBM, "Couldn't insert data into " << static_cast<const void*>(this));
  }
}

bool FdBDBMTable::remove(const void* key, int keySize, void* data, int* dataSize) {
  return removeImpl(key, keySize, data, dataSize, true);
}

bool FdBDBMTable::find(const void* key, int keySize, void* data, int* dataSize) {
  return removeImpl(key, keySize, data, dataSize, false);
}

bool FdBDBMTable::removeImpl(const void* key, int keySize, void* data, int* dataSize, bool remove) {
  DBT keyThing = thing(key, keySize);
  DBT found = thing(nullptr, 0);
  const int result = table_->get(table_, &keyThing, &found, 0);
  if (result < 0) {
    THROW(DBM, "Couldn't get key while trying to remove from " << static_cast<const void*>(this));
  }
  if (result > 0) return false;
  const int size = static_cast<int>(found.size);
  const int room = dataSize != nullptr ? std::min(*dataSize, size) : size;
  if (data != nullptr && room > 0) std::memcpy(data, found.data, static_cast<std::size_t>(room));
  if (dataSize != nullptr) *dataSize = size;
  if (remove) {
    keyThing = thing(key, keySize);
    if (table_->del(table_, &keyThing, 0) < 0) {
      THROW(DBM, "Couldn't delete from " << static_cast<const void*>(this));
    }
  }
  return true;
}

void FdBDBMTable::flush() {
  if (table_->sync(table_, 0) != 0) THROW(DBM, "Couldn't write " << name_);
}

FdIterator* FdBDBMTable::iterator() { return new FdBDBMIterator(this); }

FdBDBMIterator::FdBDBMIterator(FdBDBMTable* table) : table_(table) { FdBDBMIterator::reset(); }

void FdBDBMIterator::reset() { move(R_FIRST); }

int FdBDBMIterator::next() {
  move(R_NEXT);
  return more();
}

void FdBDBMIterator::move(unsigned how) {
  DBT key = thing(nullptr, 0);
  DBT data = thing(nullptr, 0);
  DB* table = table_->table_;
  checkResult(table->seq(table, &key, &data, how), "Error in sequential access to BDBM file");
  if (more_ == 0) return;
  key_.assign(static_cast<const char*>(key.data), key.size);
  data_.assign(static_cast<const char*>(data.data), data.size);
}

void FdBDBMIterator::checkResult(int result, const char* text) {
  more_ = result == 0;
  if (result < 0 && text != nullptr) THROW(DBM, text);
}

FdList* FdBDBMIterator::list() {
  FdList* pairs = Fd::Queue();
  for (reset(); more(); next()) pairs->insert(key(), keySize(), data(), dataSize());
  return pairs;
}

}  // namespace vandrelle
