// A symmetric table of numbers for the pairs of `size` items, all zero at first;
// a pair of an item with itself reads as 1.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace vandrelle {

class QlTriangleArray {
 public:
  // Takes size * (size + 1) / 2 floats.
  explicit QlTriangleArray(int size)
      : value_(static_cast<std::size_t>(size) * (static_cast<std::size_t>(size) + 1) / 2) {}

  float value(int i, int j) const { return i == j ? 1.0f : value_[cell(i, j)]; }
  // Of two different items.
  void value(int i, int j, float number) { value_[cell(i, j)] = number; }

 private:
  static std::size_t cell(int i, int j) {
    if (i > j) std::swap(i, j);
    const std::size_t column = static_cast<std::size_t>(j);
    return column * (column - 1) / 2 + static_cast<std::size_t>(i);
  }

  std::vector<float> value_;
};

}  // namespace vandrelle
