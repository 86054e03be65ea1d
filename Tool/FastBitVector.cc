#include "Tool/FastBitVector.h"

#include <cstring>
#include <ostream>

#include "Tool/ToolException.h"

namespace vandrelle {

namespace {

std::size_t bytesFor(int bits) { return bits > 0 ? (static_cast<std::size_t>(bits) + 7) / 8 : 0; }

}  // namespace

FastBitVector::FastBitVector(int size, u_char* bits) : size_(size), bits_(bits), ownsBits_(false) {}

FastBitVector::FastBitVector(int size)
    : size_(size), bits_(new u_char[bytesFor(size)]()), ownsBits_(true) {}

FastBitVector::~FastBitVector() {
  if (ownsBits_) delete[] bits_;
}

void FastBitVector::clear() { std::memset(bits_, 0, bytesFor(size_)); }

void FastBitVector::dump(std::ostream& os) const {
  for (int i = 0; i < size_; ++i) os << (bit(i) != 0 ? '1' : '0');
}

void FastBitVector::throwOutside(int number) const {
  THROW(BitVector, "Bit " << number << " is outside of a vector of " << size_ << " bits.");
}

}  // namespace vandrelle
