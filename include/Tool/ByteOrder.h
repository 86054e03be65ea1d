// Fixed-width integers and floats in the byte order of the index's files. Every
// multi-byte value on disk goes through these; big-endian unless the name says
// otherwise. The pointers need no alignment.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace vandrelle {

using int32 = std::int32_t;
using uint32 = std::uint32_t;
using FILE_DES = int;

namespace byte_order {

template <typename T>
inline T swapped(T value) {
  if constexpr (sizeof(T) == 2) return static_cast<T>(__builtin_bswap16(value));
  if constexpr (sizeof(T) == 4) return static_cast<T>(__builtin_bswap32(value));
  if constexpr (sizeof(T) == 8) return static_cast<T>(__builtin_bswap64(value));
}

template <typename T, std::endian Order>
inline T load(const void* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return std::endian::native == Order ? value : swapped(value);
}

template <typename T, std::endian Order>
inline void store(void* to, T value) {
  if (std::endian::native != Order) value = swapped(value);
  std::memcpy(to, &value, sizeof value);
}

}  // namespace byte_order

inline std::uint16_t loadU16(const void* from) {
  return byte_order::load<std::uint16_t, std::endian::big>(from);
}
inline std::uint32_t loadU32(const void* from) {
  return byte_order::load<std::uint32_t, std::endian::big>(from);
}
inline std::uint64_t loadU64(const void* from) {
  return byte_order::load<std::uint64_t, std::endian::big>(from);
}
inline std::int16_t loadS16(const void* from) { return static_cast<std::int16_t>(loadU16(from)); }
inline std::int32_t loadS32(const void* from) { return static_cast<std::int32_t>(loadU32(from)); }
inline float loadFloat(const void* from) { return std::bit_cast<float>(loadU32(from)); }
// `count` of them.
inline void loadFloats(const void* from, std::size_t count, float* to) {
  const auto* bytes = static_cast<const unsigned char*>(from);
  for (std::size_t i = 0; i < count; ++i) to[i] = loadFloat(bytes + 4 * i);
}

inline void storeU16(void* to, std::uint16_t value) {
  byte_order::store<std::uint16_t, std::endian::big>(to, value);
}
inline void storeU32(void* to, std::uint32_t value) {
  byte_order::store<std::uint32_t, std::endian::big>(to, value);
}
inline void storeU64(void* to, std::uint64_t value) {
  byte_order::store<std::uint64_t, std::endian::big>(to, value);
}
inline void storeS16(void* to, std::int16_t value) {
  storeU16(to, static_cast<std::uint16_t>(value));
}
inline void storeS32(void* to, std::int32_t value) {
  storeU32(to, static_cast<std::uint32_t>(value));
}
inline void storeFloat(void* to, float value) { storeU32(to, std::bit_cast<std::uint32_t>(value)); }

inline std::uint32_t loadLittleU32(const void* from) {
  return byte_order::load<std::uint32_t, std::endian::little>(from);
}
inline void storeLittleU32(void* to, std::uint32_t value) {
  byte_order::store<std::uint32_t, std::endian::little>(to, value);
}

}  // namespace vandrelle
