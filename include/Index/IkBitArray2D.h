// A matrix of bits, zero at first: bit (x, y) is bit x * ymax_ + y of a vector.
#pragma once

#include "Tool/FastBitVector.h"

namespace vandrelle {

class IkBitArray2D {
 public:
  // The product of both must be an int.
  IkBitArray2D(int xmax, int ymax) : ymax_(ymax), bits_(xmax * ymax) {}

  // x from 0 below xmax, y from 0 below ymax. The reading isn't checked.
  int bit(int x, int y) const {
    const int number = x * ymax_ + y;
    return bits_.bits()[number >> 3] >> (number & 7) & 1;
  }
  void bit(int x, int y, int value) { bits_.bit(x * ymax_ + y, value); }

 private:
  int ymax_;
  FastBitVector bits_;
};

}  // namespace vandrelle
