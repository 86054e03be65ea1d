// Formatted output in the manner of printf, as an object for a stream:
//
//   std::cout << oprintf("%-20s %5d\\n", name, count);
//
// Conversions: d i o u x X c s e E f F g G p and %%, with the flags of printf, width
// and precision (also as *). A backslash takes the next character as an escape
// (\n, \t and the like; any other stands for itself). A conversion without an
// argument prints nothing. The stream's own format is neither used nor changed.
#pragma once

#include <iosfwd>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace vandrelle {

class oprintf {
 public:
  // The format and text arguments are not copied and must live until print().
  template <typename... Arguments>
  explicit oprintf(const char* format, Arguments... arguments)
      : format_(format), arguments_{argument(arguments)...} {}

  void print(std::ostream& os) const;

 private:
  struct Integer {
    long long value;
    int bytes;  // of its type: a negative number prints unsigned in this width
  };
  using Argument = std::variant<Integer, double, const char*, const void*>;

  template <typename T>
  static Argument argument(T value) {
    if constexpr (std::is_floating_point_v<T>) {
      return static_cast<double>(value);
    } else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
      return Integer{static_cast<long long>(value), static_cast<int>(sizeof(T))};
    } else if constexpr (std::is_convertible_v<T, const char*>) {
      return static_cast<const char*>(value);
    } else {
      return static_cast<const void*>(value);
    }
  }

  // Copies a flag, width or precision part of a conversion to `spec`.
  const char* modifiers(const char* p, std::string* spec, std::size_t* next) const;
  std::string converted(std::string spec, char conversion, const Argument& argument) const;

  const char* format_;
  std::vector<Argument> arguments_;
};

std::ostream& operator<<(std::ostream& os, const oprintf& output);

}  // namespace vandrelle
