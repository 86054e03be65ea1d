#include "Driver/VymLogIostream.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vandrelle {
namespace {

TEST(VymLogIostream, UnknownThingsAreNotMentioned) {
  std::ostringstream file;
  VymLogIostream log(nullptr);
  log.stream(2, &file);
  log.log(2, 1, "title (unknown) of page");
  log.log(2, 1, "(unknown)");
  log.log(2, 1, "unknown");
  log.log(7, 1, "no stream");
  EXPECT_EQ(file.str(), "unknown\n");
}

}  // namespace
}  // namespace vandrelle
