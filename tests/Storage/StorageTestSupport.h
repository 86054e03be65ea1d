// What the tests of storages and key files share: a directory that goes with the
// test, and whole-file reads and writes.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "ThrownBy.h"

namespace vandrelle {

class TestDirectory {
 public:
  TestDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "vandrelleXXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~TestDirectory() { std::filesystem::remove_all(path_); }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

inline std::string fileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void writeFile(const std::string& path, const std::string& bytes) {
  std::filesystem::remove(path);  // replacing a file's content may wait for the device
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string hex(const std::string& bytes) {
  std::ostringstream text;
  for (unsigned char value : bytes) text << std::hex << value / 16 << value % 16;
  return text.str();
}

}  // namespace vandrelle
