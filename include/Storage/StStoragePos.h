// A position in a storage, or a size of one: 64 bits, unsigned, in bytes.
//
// On disk a position is two 32-bit words, the high half first. Arithmetic is
// plain and wraps; positions that come from a file are checked by whoever reads
// them.
#pragma once

#include <compare>
#include <cstdint>
#include <iosfwd>

#include "Tool/ByteOrder.h"

namespace vandrelle {

using StStorageLen = std::uint32_t;

class StStoragePos {
 public:
  constexpr StStoragePos() = default;
  constexpr StStoragePos(uint32 lo) : value_(lo) {}
  constexpr StStoragePos(uint32 hi, uint32 lo) : value_(std::uint64_t{hi} << 32 | lo) {}
  static constexpr StStoragePos FromBytes(std::uint64_t bytes) {
    return StStoragePos(static_cast<uint32>(bytes >> 32), static_cast<uint32>(bytes));
  }

  constexpr uint32 Hi() const { return static_cast<uint32>(value_ >> 32); }
  constexpr uint32 Lo() const { return static_cast<uint32>(value_); }
  constexpr std::uint64_t Bytes() const { return value_; }

  constexpr auto operator<=>(const StStoragePos&) const = default;

  constexpr StStoragePos& operator+=(const StStoragePos& other) {
    value_ += other.value_;
    return *this;
  }
  constexpr StStoragePos& operator-=(const StStoragePos& other) {
    value_ -= other.value_;
    return *this;
  }
  friend constexpr StStoragePos operator+(StStoragePos a, const StStoragePos& b) { return a += b; }
  friend constexpr StStoragePos operator-(StStoragePos a, const StStoragePos& b) { return a -= b; }

  // The quotient by `d`; the remainder goes to `*r`. `d` is at least 0x10000, and
  // the quotient must fit in 32 bits.
  constexpr uint32 Divide(uint32 d, uint32* r) const {
    *r = static_cast<uint32>(value_ % d);
    return static_cast<uint32>(value_ / d);
  }

  // Becomes the full product of `u` and `v`.
  constexpr void SetToProduct(uint32 u, uint32 v) { value_ = std::uint64_t{u} * v; }

  // The position that stands for none. It compares like any other number.
  static const StStoragePos invalid_;
  static const StStoragePos& InvalidStorage() { return invalid_; }
  constexpr bool valid() const { return value_ != kInvalid; }

 private:
  static constexpr std::uint64_t kInvalid = std::uint64_t{0xFFFFFFFF} << 32;
  std::uint64_t value_ = 0;
};

inline constexpr StStoragePos StStoragePos::invalid_{0xFFFFFFFF, 0};

using StPos = StStoragePos;

// Hexadecimal without leading zeros.
std::ostream& operator<<(std::ostream& os, const StStoragePos& pos);

inline StStoragePos loadStoragePos(const void* from) {
  return StStoragePos::FromBytes(loadU64(from));
}
inline void storeStoragePos(void* to, const StStoragePos& pos) { storeU64(to, pos.Bytes()); }

}  // namespace vandrelle
