// The error stream of the small programs.
#pragma once

#include <exception>
#include <iostream>
#include <string_view>

#include "Exception.h"
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
  void report(std::string_view msg) {
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

// Runs the action of a program with `report` as its log. The exit status: 0, or 1
// after a failure that was reported or thrown, also by the library (memory that is
// out), or when the standard output broke.
template <typename Action>
int runReported(FailureReport& report, Action action) try {
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    VandrelleLog::Logger(&report);
    action();
    std::cout.flush();
    return report.failures() == 0 && std::cout ? 0 : 1;
  }
  environment.restore_env();
  std::cout.flush();
  report.report(ExceptionManager::instance()->pop()->message());
  return 1;
} catch (const std::exception& failure) {
  std::cout.flush();
  report.report(failure.what());
  return 1;
}

}  // namespace vandrelle
