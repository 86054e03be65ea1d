// What the tests of storages and key files share.
#pragma once

#include <sstream>

#include "TestFiles.h"
#include "ThrownBy.h"

namespace vandrelle {

inline std::string hex(const std::string& bytes) {
  std::ostringstream text;
  for (unsigned char value : bytes) text << std::hex << value / 16 << value % 16;
  return text.str();
}

}  // namespace vandrelle
