// The interface of the untyped containers: a bag stores pairs of a key and an
// optional data block, both byte strings, by value. FdStack, FdQueue and FdTable
// keep them in memory, FdBDBMTable on disk. Typed views: Fun/FdWrapper.h;
// concrete bags without their headers: Fun/Fd.h.
#pragma once

#include <iosfwd>

namespace vandrelle {

class FdIterator;

class FdBag {
 public:
  virtual ~FdBag();

  virtual bool isEmpty() = 0;

  // Throws _Exception_FdUnimpl unless the class offers it.
  virtual int numElements();

  // Copies `keySize` bytes of key and `dataSize` bytes of data in. Whether an
  // equal key is replaced is the class's policy. Bags in memory hold keys and
  // data of up to 4092 bytes each and throw _Exception_FdPair beyond that.
  virtual void insert(const void* key, int keySize, const void* data, int dataSize) = 0;

  // Takes out, or only looks up, the first pair with the key, and copies its data
  // out: `*dataSize` holds the room at `data` in bytes and gets the stored size;
  // a null `dataSize` stands for room enough; no more than the room is written.
  // False, with the arguments untouched, if there is no such key.
  virtual bool remove(const void* key, int keySize, void* data, int* dataSize) = 0;
  virtual bool find(const void* key, int keySize, void* data, int* dataSize) = 0;

  // A new walk over all pairs, owned by the caller.
  virtual FdIterator* iterator() = 0;

  // Fill the bag from its written form, and write it. Throw _Exception_FdUnimpl
  // unless the class offers them.
  virtual void read(std::istream& is);
  virtual void write(std::ostream& os);

  virtual int keyType();
  virtual int dataType();

 protected:
  // 1 keeps pairs with equal keys side by side, 0 replaces.
  virtual int allowDuplicatesPolicy();

  // Twelve bits. The shift counts bits although it looks as if it meant bytes;
  // it is stored in each pair and written with it, so it must stay.
  virtual int hash(const void* key, int keySize);

  virtual bool isEqual(const void* a, const void* b, int size);
};

std::ostream& operator<<(std::ostream& os, FdBag* bag);
std::istream& operator>>(std::istream& is, FdBag* bag);

// Orders two keys: below, at or above 0. Sizes in bytes.
using FdSortFunction = int (*)(const void* key1, int size1, const void* key2, int size2);

// A bag with an order of its own.
class FdList : public FdBag {
 public:
  // Sorts by key. The number is handed down for the class's use. Throws
  // _Exception_FdUnimpl unless the class offers it.
  virtual void sort(FdSortFunction compare, int);
};

}  // namespace vandrelle
