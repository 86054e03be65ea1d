// The log as text, for every folder's tests.
#pragma once

#include <string>
#include <vector>

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

}  // namespace vandrelle
