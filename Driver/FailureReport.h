// The error stream of the small programs.
#pragma once

#include <iostream>

#include "Tool/VandrelleLog.h"

namespace vandrelle {

// Readers log some damage and go on; in a program that shows an index it counts
// as a failure. Only the first is told: further ones mostly follow from it.
class FailureReport : public VandrelleLog {
 public:
  explicit FailureReport(const char* program) : program_(program) {}

  void log(int msg_type, int /*msg_level*/, const char* msg) override {
    if (msg_type == 0) report(msg);
  }
  void report(const char* msg) {
    if (failures_++ == 0) std::cerr << program_ << ": " << msg << '\n';
  }
  // Counts a failure that somebody else has told.
  void failed() { ++failures_; }
  // Forgets: the next failure is the first again.
  void reset() { failures_ = 0; }
  int failures() const { return failures_; }

 private:
  const char* program_;
  int failures_ = 0;
};

}  // namespace vandrelle
