// What a reader of an index asks of it, wherever the index lives.
#pragma once

#include "Hierarchy.h"

namespace vandrelle {

class IkRetriever;
class IkTranspose;
class IkWordTable;
struct IkIndexInfo;

DESCRIPTOR_ROOT(IkIndexBinder);

class IkIndexBinder {
  DESCRIBED_ROOT(IkIndexBinder)

  virtual ~IkIndexBinder() = default;

  // All stay owned by the binder.
  virtual IkRetriever* retriever() = 0;
  virtual IkTranspose* transpose() = 0;
  virtual IkWordTable* wordTable() = 0;
  virtual IkIndexInfo* info() = 0;
};

}  // namespace vandrelle
