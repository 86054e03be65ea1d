// A similarity as a share of a right angle.
#pragma once

namespace vandrelle {

// 1 - acos(x) / (pi / 2), from a table of kAcosSteps + 1 values with a straight line
// between each two: 0 gives 0, 0.5 a third, 1 gives 1. `x` outside of 0 to 1 counts
// as the nearer end.
constexpr int kAcosSteps = 256;
extern const float* const IkAcosTable;
float IkScaledAcos(float x);

}  // namespace vandrelle
