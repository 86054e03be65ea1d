// What the tests of the index share.
#pragma once

#include "TestFiles.h"
#include "TestLog.h"
#include "ThrownBy.h"

namespace vandrelle {

inline std::string bytesOf(const std::string& path) { return fileBytes(path); }
inline void writeBytes(const std::string& path, const std::string& bytes) {
  writeFile(path, bytes);
}

}  // namespace vandrelle
