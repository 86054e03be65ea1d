// What the files of an index take for granted of the machine, settled when the
// system is built.
#pragma once

#include <climits>
#include <cstdint>
#include <limits>

namespace vandrelle {

// n times 2 to the e.
constexpr float mkfloat32(long n, int e) {
  float value = static_cast<float>(n);
  for (; e > 0; --e) value *= 2.0f;
  for (; e < 0; ++e) value /= 2.0f;
  return value;
}

struct CheckValidityOfSizedTypeDefs {
  static_assert(CHAR_BIT == 8);
  static_assert(sizeof(std::uint8_t) == 1 && sizeof(std::int16_t) == 2);
  static_assert(sizeof(std::int32_t) == 4 && sizeof(std::int64_t) == 8);
  static_assert(std::numeric_limits<std::uint8_t>::min() == 0);
  static_assert(std::numeric_limits<std::uint8_t>::max() == 255);
  static_assert(std::numeric_limits<std::int16_t>::min() == -32768);
  static_assert(std::numeric_limits<std::int16_t>::max() == 32767);
  static_assert(std::numeric_limits<std::int32_t>::min() == -0x7FFFFFFF - 1);
  static_assert(std::numeric_limits<std::int32_t>::max() == 0x7FFFFFFF);
  static_assert(sizeof(int) == 4, "fields of files are held in an int");
};

struct CheckIntsAreTwosComplement {
  static_assert(~0 == -1 && static_cast<std::uint32_t>(-1) == 0xFFFFFFFFu);
};

struct CheckFloat32isIEEE {
  static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == 4);
  static_assert(mkfloat32(0xFFFFFF, 104) == std::numeric_limits<float>::max());
  static_assert(mkfloat32(1, -126) == std::numeric_limits<float>::min());
  static_assert(mkfloat32(1, -149) == std::numeric_limits<float>::denorm_min());
  static_assert(mkfloat32(1, -23) == std::numeric_limits<float>::epsilon());
};

}  // namespace vandrelle
