#include "Tool/BitField.h"

#include <ostream>

#include "Tool/ToolException.h"

namespace vandrelle {

namespace {

constexpr int kMaxBits = 8;

void checkLength(int len) {
  if (len > kMaxBits) THROW(BitField, "Can't select bitfields larger than 8");
}

}  // namespace

unsigned char BitField::get(const void* data, int startbit, int len) {
  checkLength(len);
  if (len <= 0) return 0;
  const auto* bytes = static_cast<const unsigned char*>(data) + startbit / 8;
  const int shift = startbit % 8;
  unsigned bits = bytes[0];
  if (shift + len > 8) bits |= static_cast<unsigned>(bytes[1]) << 8;
  return static_cast<unsigned char>(bits >> shift & ((1u << len) - 1));
}

void BitField::put(void* data, int startbit, int len, unsigned char newdata) {
  checkLength(len);
  if (len <= 0) return;
  auto* bytes = static_cast<unsigned char*>(data) + startbit / 8;
  const int shift = startbit % 8;
  const unsigned mask = ((1u << len) - 1) << shift;
  const unsigned bits = static_cast<unsigned>(newdata) << shift & mask;
  bytes[0] = static_cast<unsigned char>((bytes[0] & ~mask) | bits);
  if (shift + len > 8) {
    bytes[1] = static_cast<unsigned char>((bytes[1] & ~(mask >> 8)) | bits >> 8);
  }
}

void BitField::copy(const void* v_src, int src_start, void* v_dst, int dst_start, int num_bits) {
  for (; num_bits > kMaxBits; num_bits -= kMaxBits) {
    put(v_dst, dst_start, kMaxBits, get(v_src, src_start, kMaxBits));
    src_start += kMaxBits;
    dst_start += kMaxBits;
  }
  put(v_dst, dst_start, num_bits, get(v_src, src_start, num_bits));
}

void BitField::Printer::print(std::ostream& os) const {
  for (int i = 0; i < len_; ++i) os << (get(data_, start_ + i, 1) != 0 ? '1' : '0');
}

std::ostream& operator<<(std::ostream& os, const BitField::Printer& printer) {
  printer.print(os);
  return os;
}

}  // namespace vandrelle
