#include "Tool/PrintableText.h"

#include <cstddef>

namespace vandrelle {
namespace {

// Bytes of the well-formed UTF-8 character at the start of `text`, 0 for none
// (RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF).
std::size_t utf8Length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  const unsigned second = byte(1);
  const bool outOfRange = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
                          (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90);
  return outOfRange ? 0 : length;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string printable(std::string_view text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string result;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x20 || byte == 0x7F) {
      result += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    } else {
      result += letter;
    }
  }
  return result;
}

std::string asUtf8(std::string_view text) {
  if (isUtf8(text)) return std::string(text);
  std::string result;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x80) {
      result += letter;
    } else {
      result += {static_cast<char>(0xC0 | byte >> 6), static_cast<char>(0x80 | (byte & 0x3F))};
    }
  }
  return result;
}

}  // namespace vandrelle
