// A folder in memory for the files of a fuzzer, and what the fuzzers of index files
// share: sound files that the input damages.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace vandrelle {

class FuzzFolder {
 public:
  FuzzFolder() {
    char name[] = "/dev/shm/vandrelle_fuzz_XXXXXX";
    path_ = mkdtemp(name);
  }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  static void write(const std::string& path, const char* data, std::size_t size) {
    std::ofstream(path, std::ios::binary).write(data, static_cast<std::streamsize>(size));
  }

 private:
  std::string path_;
};

// Files that are sound when they are taken in. Each damage() writes them anew: the
// first byte of the input says how many bytes are lost at the end of one of them,
// every four bytes behind it put one byte (file, place in two bytes, value). As a
// throw runs no destructors, each throw leaves some memory behind: run these fuzzers
// with ASAN_OPTIONS=detect_leaks=0, and half a minute at a time.
class DamagedFiles {
 public:
  DamagedFiles() : firstDescriptor_(::open("/dev/null", O_RDONLY)) { ::close(firstDescriptor_); }

  void add(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    files_.emplace_back(path, std::string(std::istreambuf_iterator<char>(in), {}));
  }

  void damage(const std::uint8_t* data, std::size_t size) const {
    ::closefrom(firstDescriptor_);  // what throws left open
    std::vector<std::string> bytes;
    for (const auto& [path, sound] : files_) bytes.push_back(sound);
    for (std::size_t i = 1; i + 4 <= size; i += 4) {
      std::string& file = bytes[data[i] % bytes.size()];
      const std::size_t place = data[i + 1] * 256u + data[i + 2];
      if (!file.empty()) file[place % file.size()] = static_cast<char>(data[i + 3]);
    }
    if (size != 0) {
      std::string& cut = bytes[data[0] % bytes.size()];
      cut.resize(cut.size() - std::min(cut.size(), data[0] / bytes.size()));
    }
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      FuzzFolder::write(files_[i].first, bytes[i].data(), bytes[i].size());
    }
  }

 private:
  int firstDescriptor_;
  std::vector<std::pair<std::string, std::string>> files_;  // path, sound bytes
};

}  // namespace vandrelle
