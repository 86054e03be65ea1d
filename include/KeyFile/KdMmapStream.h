// The stream of the mapped key files. It reads through the descriptor, in runs,
// even where the key file is mapped.
#pragma once

#include "KeyFile/KdStreamImpl.h"

namespace vandrelle {

class KdMmapStream final : public KdStreamImpl {
 public:
  explicit KdMmapStream(const KdChunkAccessor* accessor) : KdStreamImpl(accessor) {}
};

}  // namespace vandrelle
