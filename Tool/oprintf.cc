#include "Tool/oprintf.h"

#include <cstdio>
#include <cstring>
#include <ostream>

namespace vandrelle {

namespace {

constexpr int kMaxWidth = 4096;

char escaped(char c) {
  switch (c) {
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'v':
      return '\v';
    case 'a':
      return '\a';
    default:
      return c;
  }
}

template <typename T>
std::string formatted(const std::string& spec, T value) {
  const int length = std::snprintf(nullptr, 0, spec.c_str(), value);
  if (length <= 0) return {};
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), spec.c_str(), value);
  text.pop_back();
  return text;
}

unsigned long long unsignedValue(long long value, int bytes) {
  const auto bits = static_cast<unsigned long long>(value);
  return bytes >= 8 ? bits : bits & ((1ULL << (bytes * 8)) - 1);
}

}  // namespace

void oprintf::print(std::ostream& os) const {
  std::size_t next = 0;
  for (const char* p = format_; *p != '\0'; ++p) {
    if (*p == '\\' && p[1] != '\0') {
      os.put(escaped(*++p));
    } else if (*p != '%') {
      os.put(*p);
    } else if (p[1] == '%') {
      os.put(*++p);
    } else {
      std::string spec = "%";
      p = modifiers(p + 1, &spec, &next);
      if (*p == '\0') return;
      if (next < arguments_.size()) {
        const std::string text = converted(spec, *p, arguments_[next++]);
        os.write(text.data(), static_cast<std::streamsize>(text.size()));
      }
    }
  }
}

const char* oprintf::modifiers(const char* p, std::string* spec, std::size_t* next) const {
  while (*p != '\0' && std::strchr("-+ #0", *p) != nullptr) *spec += *p++;
  for (int part = 0; part < 2; ++part) {
    if (part == 1) {
      if (*p != '.') break;
      *spec += *p++;
    }
    long number = 0;
    bool given = false;
    if (*p == '*') {
      ++p;
      const Integer* width =
          *next < arguments_.size() ? std::get_if<Integer>(&arguments_[*next]) : nullptr;
      ++*next;
      given = width != nullptr;
      if (given) number = static_cast<long>(width->value);
    }
    for (; *p >= '0' && *p <= '9'; ++p) {
      given = true;
      if (number <= kMaxWidth) number = number * 10 + (*p - '0');
    }
    if (number > kMaxWidth) number = kMaxWidth;
    if (number < -kMaxWidth) number = -kMaxWidth;
    if (part == 1 && number < 0) {
      spec->pop_back();  // counts as no precision
    } else if (given) {
      *spec += std::to_string(number);
    }
  }
  while (*p != '\0' && std::strchr("hlLqjzt", *p) != nullptr) ++p;
  return p;
}

std::string oprintf::converted(std::string spec, char conversion, const Argument& argument) const {
  const Integer* integer = std::get_if<Integer>(&argument);
  const double* real = std::get_if<double>(&argument);
  switch (conversion) {
    case 'd':
    case 'i':
      if (real != nullptr) return formatted(spec + "lld", static_cast<long long>(*real));
      return integer != nullptr ? formatted(spec + "lld", integer->value) : std::string();
    case 'o':
    case 'u':
    case 'x':
    case 'X':
      if (integer == nullptr) return {};
      return formatted(spec + "ll" + conversion, unsignedValue(integer->value, integer->bytes));
    case 'c':
      return integer != nullptr ? formatted(spec + "c", static_cast<int>(integer->value))
                                : std::string();
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
      if (integer != nullptr) {
        return formatted(spec + conversion, static_cast<double>(integer->value));
      }
      return real != nullptr ? formatted(spec + conversion, *real) : std::string();
    case 's': {
      const char* const* text = std::get_if<const char*>(&argument);
      if (text == nullptr) return {};
      return formatted(spec + "s", *text != nullptr ? *text : "(null)");
    }
    case 'p': {
      const void* const* pointer = std::get_if<const void*>(&argument);
      return pointer != nullptr ? formatted(spec + "p", *pointer) : std::string();
    }
    default:
      return spec + conversion;
  }
}

std::ostream& operator<<(std::ostream& os, const oprintf& output) {
  output.print(os);
  return os;
}

}  // namespace vandrelle
