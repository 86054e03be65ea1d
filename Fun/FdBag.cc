#include "Fun/FdBag.h"

#include <cstring>

#include "Fun/FdException.h"

namespace vandrelle {

FdBag::~FdBag() = default;

int FdBag::numElements() {
  THROW(FdUnimpl, "int FdBag::numElements() is unimplemented in this class");
}

void FdBag::read(std::istream&) {
  THROW(FdUnimpl, "void FdBag::read(istream&) is unimplemented in this class");
}

void FdBag::write(std::ostream&) {
  THROW(FdUnimpl, "void FdBag::write(ostream&) is unimplemented in this class");
}

int FdBag::keyType() { return 0; }

int FdBag::dataType() { return 0; }

int FdBag::allowDuplicatesPolicy() { return 1; }

int FdBag::hash(const void* key, int keySize) {
  const auto* bytes = static_cast<const signed char*>(key);
  unsigned hashed = 0;
  for (int i = 0; i < keySize; ++i) {
    hashed ^= static_cast<unsigned>(static_cast<int>(bytes[i])) << (3 - i % 4);
  }
  return static_cast<int>(hashed & 0xfff);
}

bool FdBag::isEqual(const void* a, const void* b, int size) {
  return size <= 0 || std::memcmp(a, b, static_cast<std::size_t>(size)) == 0;
}

std::ostream& operator<<(std::ostream& os, FdBag* bag) {
  bag->write(os);
  return os;
}

std::istream& operator>>(std::istream& is, FdBag* bag) {
  bag->read(is);
  return is;
}

void FdList::sort(FdSortFunction, int) {
  THROW(FdUnimpl, "void FdList::sort(FdSortFunction) is unimplemented in this class");
}

}  // namespace vandrelle
