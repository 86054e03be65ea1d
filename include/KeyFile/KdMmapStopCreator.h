// Writes the stop-style key files whose readers map the pointer file, kind 15. But
// for the type code the files are those of kinds 12 and 13.
#pragma once

#include "KeyFile/KdStopCreator.h"

namespace vandrelle {

class KdMmapStopCreator final : public KdStopCreator {
 public:
  using KdStopCreator::KdStopCreator;
};

}  // namespace vandrelle
