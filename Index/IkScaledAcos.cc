#include "Index/IkScaledAcos.h"

#include <cmath>
#include <numbers>

namespace vandrelle {

namespace {

struct AcosTable {
  float entries[kAcosSteps + 1];

  AcosTable() {
    for (int i = 0; i <= kAcosSteps; ++i) {
      const double angle = std::acos(static_cast<double>(i) / kAcosSteps);
      entries[i] = static_cast<float>(1.0 - angle / (std::numbers::pi / 2));
    }
  }
};

const AcosTable acosTable;

}  // namespace

const float* const IkAcosTable = acosTable.entries;

float IkScaledAcos(float x) {
  if (!(x > 0)) return IkAcosTable[0];
  if (x >= 1.0f) return IkAcosTable[kAcosSteps];
  const float place = x * kAcosSteps;
  const int step = static_cast<int>(place);
  const float low = IkAcosTable[step];
  return low + (place - static_cast<float>(step)) * (IkAcosTable[step + 1] - low);
}

}  // namespace vandrelle
