#include "Index/IkRetrieverQuery.h"

#include <cstring>

namespace vandrelle {

namespace {

// Shorter rows are copied: the buffer that they came in holds much else.
constexpr uint32 kCopiedRow = 2048;

}  // namespace

const unsigned char* IkRowBuffers::keepRow(IkDataFileBinder* binder) {
  if (binder->dataSize() < kCopiedRow) {
    unsigned char* const copy = allocate(binder->dataSize());
    if (binder->dataSize() != 0) std::memcpy(copy, binder->rowData(), binder->dataSize());
    return copy;
  }
  rows_.emplace_back(binder->rowBuffer());
  return rows_.back()->data();
}

unsigned char* IkRowBuffers::allocate(std::size_t bytes) {
  bytes_.push_back(std::make_unique_for_overwrite<unsigned char[]>(bytes));
  return bytes_.back().get();
}

void IkRowBuffers::clear() {
  rows_.clear();
  bytes_.clear();
}

void IkRetrieverQuery::clear() {
  terms.clear();
  slotTerms.clear();
  queryInfo.clear();
  unpackTable.clear();
  ops.clear();
  composites.clear();
  buffers.clear();
  hasDirection = false;
  virtualOperands = false;
}

int IkRetrieverQuery::rowOf(Term& term) {
  if (term.row < 0) {
    term.row = numUnpackers();
    unpackTable.push_back(term.unpacker);
  }
  return term.row;
}

}  // namespace vandrelle
