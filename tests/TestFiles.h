// Files of a test, for every folder: a directory that goes with the test,
// whole-file reads and writes, and what disks do to bytes.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace vandrelle {

class TestDirectory {
 public:
  TestDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "vandrelleXXXXXX").string();
    path_ = std::filesystem::canonical(mkdtemp(name.data())).string();
  }
  ~TestDirectory() { std::filesystem::remove_all(path_); }
  TestDirectory(const TestDirectory&) = delete;
  TestDirectory& operator=(const TestDirectory&) = delete;
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

class DirectoryTest : public testing::Test {
 protected:
  TestDirectory directory_;
};

inline std::string fileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Makes the directories on the way.
inline void writeFile(const std::string& path, const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::filesystem::remove(path);  // replacing a file's content may wait for the device
  std::ofstream(path, std::ios::binary) << bytes;
}

// `sound` with the bits of `bits` turned in the byte at `place`.
inline std::string flipped(std::string sound, std::size_t place, int bits) {
  sound[place] = static_cast<char>(sound[place] ^ bits);
  return sound;
}

// The same bytes whenever as many are asked for.
inline std::string noise(std::size_t bytes) {
  std::mt19937 random(11);
  std::string all(bytes, '\0');
  for (char& one : all) one = static_cast<char>(random());
  return all;
}

}  // namespace vandrelle
