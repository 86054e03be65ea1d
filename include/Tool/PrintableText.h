// Text of unknown origin on its way to a terminal or into a report.
#pragma once

#include <string>
#include <string_view>

namespace vandrelle {

// The text with each control byte as \xHH: what an index holds may be anything
// when a file is damaged, and must not reach a terminal as commands.
std::string printable(std::string_view text);
inline std::string printable(const char* text) {
  return printable(std::string_view(text == nullptr ? "" : text));
}

// The text as UTF-8: as it is where it is that already, else taken as Latin-1.
std::string asUtf8(std::string_view text);

}  // namespace vandrelle
