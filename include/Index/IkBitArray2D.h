// A matrix of bits, zero at first: bit (x, y) is bit x * ymax_ + y of a vector.
#pragma once

#include "Tool/FastBitVector.h"

namespace vandrelle {

class IkBitArray2D {
 public:
  // The product of both must be an int.
  IkBitArray2D(int xmax, int ymax) : ymax_(ymax), bits_(xmax * ymax) {}

  // As FastBitVector's, for x below xmax and y below ymax.
  int bit(int x, int y) const { return bits_.bit(x * ymax_ + y); }
  void bit(int x, int y, int value) { bits_.bit(x * ymax_ + y, value); }

 private:
  int ymax_;
  FastBitVector bits_;
};

}  // namespace vandrelle
