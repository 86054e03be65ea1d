// One element of a sparse row: a chunk and how often the row's word stands in
// it. The merger lays these over its buffer of plain integers, so the structure
// is exactly two of them.
#pragma once

namespace vandrelle {

struct IkDocumentInfo {
  int chunk;
  int frequency;
};

static_assert(sizeof(IkDocumentInfo) == 2 * sizeof(int));

}  // namespace vandrelle
