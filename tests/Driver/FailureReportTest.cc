// How the small programs end: exit status and what the error stream is told.

#include "Driver/FailureReport.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>

namespace vandrelle {
namespace {

TEST(FailureReport, OneLineAndAStatusForEveryEnd) {
  const struct {
    std::function<void()> action;
    int status;
    const char* errors;
  } cases[] = {
      {[] {}, 0, ""},
      {[] { LOG(0, 1, "a page is damaged"); }, 1, "tool: a page is damaged\n"},
      {[] { LOG(2, 1, "a step"); }, 0, ""},
      {[] { THROW(IO, "no file"); }, 1, "tool: no file\n"},
      {[] { throw std::bad_alloc(); }, 1, "tool: std::bad_alloc\n"},
  };
  for (const auto& c : cases) {
    FailureReport report("tool");
    testing::internal::CaptureStderr();
    EXPECT_EQ(runReported(report, c.action), c.status);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), c.errors);
    VandrelleLog::Logger(nullptr);
  }
  EXPECT_EQ(ExceptionManager::instance()->environment(), nullptr);
}

}  // namespace
}  // namespace vandrelle
