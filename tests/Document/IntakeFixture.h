// What the tests of document intake share: a scratch directory, the log as text,
// the text of a throw.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "ThrownBy.h"
#include "Tool/ByteOrder.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

class IntakeTest : public testing::Test, public VandrelleLog {
 protected:
  IntakeTest() {
    char name[] = "/tmp/vandrelle_intake_XXXXXX";
    dir_ = mkdtemp(name);
    dir_ = std::filesystem::canonical(dir_).string();
    VandrelleLog::Logger(this);
  }
  ~IntakeTest() override {
    VandrelleLog::Logger(nullptr);
    std::filesystem::remove_all(dir_);
  }

  void log(int msg_type, int, const char* msg) override {
    log_ += std::to_string(msg_type) + " " + msg + "\n";
  }
  bool logged(const std::string& line) const {
    return ("\n" + log_).find("\n" + line + "\n") != std::string::npos;
  }

  std::string path(const std::string& name) const { return dir_ + "/" + name; }

  // Makes the directories on the way.
  std::string write(const std::string& name, const std::string& text) const {
    const std::string file = path(name);
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }

  static std::string read(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }

  // The file as big-endian integers.
  static std::vector<int32_t> integers(const std::string& file) {
    const std::string bytes = read(file);
    std::vector<int32_t> values;
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
      values.push_back(loadS32(bytes.data() + at));
    }
    return values;
  }

  std::string dir_;
  std::string log_;
};

}  // namespace vandrelle
