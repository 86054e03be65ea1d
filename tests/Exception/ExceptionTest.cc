#include "Exception.h"

#include <gtest/gtest.h>

#include <sstream>

#include "ThrownBy.h"

namespace vandrelle {
namespace {

EXCEPTION_FAMILY(Alpha);
EXCEPTION_FAMILY_2(AlphaIO, Alpha, IO);

std::string printed(const Exception* exception) {
  std::ostringstream os;
  os << exception;
  return os.str();
}

TEST(Exception, FamilyTestsFollowBothParents) {
  _Exception_AlphaIO child("");
  EXPECT_TRUE(child.isA("AlphaIO"));
  EXPECT_TRUE(child.isA("Alpha"));
  EXPECT_TRUE(child.isA("IO"));
  EXPECT_TRUE(child.isA("System"));
  EXPECT_FALSE(child.isA("Fatal"));
  EXPECT_FALSE(child.isExactly("IO"));
  _Exception_IO parent("");
  EXPECT_FALSE(parent.isA("AlphaIO"));
}

void failFor(int answer, int line = __builtin_LINE()) {
  THROW_AT(IO, line, "could not open " << answer);
}

TEST(Exception, ThrowJumpsWithMessageAndPlace) {
  ExceptionManager* manager = ExceptionManager::instance();
  EXPECT_FALSE(manager->exception("IO"));
  constexpr int thrownFrom = __LINE__ + 3;
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    failFor(42);
    FAIL() << "a throw returned";
  }
  ASSERT_TRUE(manager->exception("System"));
  environment.restore_env();
  Exception* caught = manager->pop();
  EXPECT_EQ(manager->last(), caught);
  EXPECT_EQ(printed(caught),
            "IO: could not open 42 [\"ExceptionTest\", line " + std::to_string(thrownFrom) + "]");
  EXPECT_FALSE(manager->exception());
  delete caught;
}

TEST(Exception, LongMessageIsCutAndLeavesNoTail) {
  for (std::size_t length : {511u, 512u, 5000u, 3u}) {
    EXPECT_EQ(thrownBy([&] { THROW(Fatal, std::string(length, 'x')); }),
              "Fatal: " + std::string(std::min<std::size_t>(length, 511), 'x'));
  }
}

TEST(Exception, UnhandledPassesToTheEnclosingEnvironment) {
  ExceptionManager* manager = ExceptionManager::instance();
  ExceptionEnvironment outer;
  if (GUARDED(outer)) {
    ExceptionEnvironment inner;
    if (GUARDED(inner)) {
      THROW(Alpha, "first");
    }
    inner.restore_env();
    manager->do_throw();
  }
  outer.restore_env();
  ASSERT_TRUE(manager->exception("Alpha"));
  delete manager->pop();
  EXPECT_EQ(manager->environment(), nullptr);
}

TEST(ExceptionDeathTest, NobodyListens) {
  EXPECT_EXIT(THROW(Fatal, "boom"), testing::ExitedWithCode(255),
              "Uncaught exception: Fatal: boom \\[\"ExceptionTest\", line [0-9]+\\]\nExiting\\.\n");
}

}  // namespace
}  // namespace vandrelle
