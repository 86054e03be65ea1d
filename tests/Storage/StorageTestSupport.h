// What the tests of storages and key files share: a directory that goes with the
// test, whole-file reads and writes, and the text of what an operation throws.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "Exception.h"

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

// "Family: message" of what `operation` throws, or "" if it returns.
template <typename Operation>
std::string thrownBy(Operation operation) {
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    operation();
    return "";
  }
  environment.restore_env();
  Exception* caught = ExceptionManager::instance()->pop();
  std::string text = std::string(caught->name()) + ": " + caught->message();
  delete caught;
  return text;
}

}  // namespace vandrelle
