// Numbers in the arguments of a query, read as atoi and atof do: blanks in front
// are passed over, what stands behind is not looked at. A number that is too
// large gives the nearest whole one that there is; a fraction that is not finite is
// no number.
#pragma once

#include <cmath>
#include <cstdlib>
#include <limits>

namespace vandrelle::PrNumber {

// False, with `number` as it was, if there is none. `*end` gets the place behind
// it, or `text`.
inline bool read(const char* text, int* number, const char** end) {
  char* behind = nullptr;
  const long value = std::strtol(text, &behind, 10);
  *end = behind;
  if (behind == text) return false;
  using Limits = std::numeric_limits<int>;
  *number = value < Limits::min()   ? Limits::min()
            : value > Limits::max() ? Limits::max()
                                    : static_cast<int>(value);
  return true;
}

inline bool read(const char* text, float* number) {
  char* behind = nullptr;
  const float value = std::strtof(text, &behind);
  if (behind == text || !std::isfinite(value)) return false;
  *number = value;
  return true;
}

// 0 if there is none.
inline int toInt(const char* text) {
  int number = 0;
  read(text, &number, &text);
  return number;
}

inline float toFloat(const char* text) {
  float number = 0;
  read(text, &number);
  return number;
}

}  // namespace vandrelle::PrNumber
