// Runs of bits in a byte array. Bit numbers count from the low bit of byte 0; a run
// may span two bytes, and its low bits lie in the first of them.
#pragma once

#include <iosfwd>

namespace vandrelle {

class BitField {
 public:
  // At most 8 bits a time; throws _Exception_BitField above that. No byte outside of
  // the run is touched.
  static unsigned char get(const void* data, int startbit, int len);
  // Bits outside of the run stay.
  static void put(void* data, int startbit, int len, unsigned char newdata);

  // Any number of bits, from the low ones up. The arrays must not overlap.
  static void copy(const void* v_src, int src_start, void* v_dst, int dst_start, int num_bits);

  // Prints a run as 0 and 1, the low bit first.
  class Printer {
   public:
    Printer(const void* dataptr, unsigned short start, unsigned short len)
        : data_(dataptr), start_(start), len_(len) {}
    void print(std::ostream& os) const;

   private:
    const void* data_;
    unsigned short start_;
    unsigned short len_;
  };
};

std::ostream& operator<<(std::ostream& os, const BitField::Printer& printer);

}  // namespace vandrelle
