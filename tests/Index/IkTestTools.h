// What the tests of the index share.
#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "ThrownBy.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

// Collects the log, as "type:text", while it lives.
class TestLog : public VandrelleLog {
 public:
  TestLog() : former_(VandrelleLog::Logger()) { VandrelleLog::Logger(this); }
  ~TestLog() override { VandrelleLog::Logger(former_); }
  void log(int msg_type, int, const char* msg) override {
    lines_.push_back(std::to_string(msg_type) + ":" + msg);
  }
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  VandrelleLog* former_;
  std::vector<std::string> lines_;
};

inline std::string bytesOf(const std::string& path) {
  std::ifstream is(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(is), {}};
}

inline void writeBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

}  // namespace vandrelle
