// A fixed number of bits; bit i is bit i % 8, from the low one, of byte i / 8.
#pragma once

#include <sys/types.h>

#include <iosfwd>

namespace vandrelle {

class FastBitVector {
 public:
  // Over `bits`, (size + 7) / 8 bytes that are not owned and keep their content.
  FastBitVector(int size, u_char* bits);
  // Over bytes of its own, all bits 0.
  explicit FastBitVector(int size);
  ~FastBitVector();
  FastBitVector(const FastBitVector&) = delete;
  FastBitVector& operator=(const FastBitVector&) = delete;

  // All bits to 0.
  void clear();

  // Read and set one bit. Throw _Exception_BitVector for a number outside of 0 to
  // size() - 1.
  int bit(int number) const {
    check(number);
    return bits_[number >> 3] >> (number & 7) & 1;
  }
  void bit(int number, int value) {
    check(number);
    const int mask = 1 << (number & 7);
    u_char& place = bits_[number >> 3];
    place = static_cast<u_char>(value != 0 ? place | mask : place & ~mask);
  }

  int size() const { return size_; }  // in bits
  u_char* bits() const { return bits_; }

  // One character 0 or 1 a bit, from bit 0 up.
  void dump(std::ostream& os) const;

 private:
  void check(int number) const {
    if (number < 0 || number >= size_) throwOutside(number);
  }
  [[noreturn]] void throwOutside(int number) const;

  int size_;
  u_char* bits_;
  bool ownsBits_;
};

}  // namespace vandrelle
