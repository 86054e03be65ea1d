// What the fuzzers of feeds share: the input as a file, and the helpers of the
// built-in types, chosen by the input's first byte.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

#include "Document/DcFileStream.h"
#include "DocumentImpl/DiHelperDistributor.h"
#include "fuzz/FuzzFolder.h"

namespace vandrelle {

class FuzzFeed {
 public:
  static constexpr int kTypes = 16;

  FuzzFeed() : root_(folder_ / "root") {
    std::ofstream(root_ + ".cus") << "%%\nName=\n";
    std::ofstream table(root_ + ".sep", std::ios::binary);
    for (int i = 0; i < 100000; ++i) table << '\0' << '\0' << '\0' << static_cast<char>(i % 97);
    table.close();
    helpers_ = new DiHelperDistributor(root_.c_str());
  }

  DiHelperDistributor& helpers() { return *helpers_; }

  static int typeOf(const std::uint8_t* data) { return 1 + data[0] % kTypes; }

  // A stream over the bytes; good until the next call.
  DcSourceStream* open(const std::uint8_t* data, std::size_t size) {
    const std::string path = folder_ / "feed";
    FuzzFolder::write(path, reinterpret_cast<const char*>(data), size);
    stream_ = std::make_unique<DcSourceStream>(path.c_str());
    return stream_.get();
  }

 private:
  FuzzFolder folder_;
  std::string root_;
  DiHelperDistributor* helpers_;  // lives as long as the process
  std::unique_ptr<DcSourceStream> stream_;
};

}  // namespace vandrelle
