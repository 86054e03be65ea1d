#include "Tool/SysTools.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "SmallDevice.h"
#include "Storage/StorageTestSupport.h"
#include "Tool/NameManager.h"
#include "Tool/VandrelleLog.h"
#include "Tool/VersionControl.h"

namespace vandrelle {
namespace {

TEST(SysTools, RemovesFilesByExpression) {
  TestDirectory directory;
  for (const char* name : {"a.tmp1", "b.tmp", "tmp.c", "keep"}) writeFile(directory / name, "");
  std::ostringstream said;
  VandrelleLogIostream log(&said);
  VandrelleLog::Logger(&log);
  EXPECT_EQ(SysTools::removeFiles((directory / ".").c_str(), "\\.tmp"), 2);
  EXPECT_EQ(SysTools::removeFiles((directory / "").c_str(), "^tmp"), 1);
  EXPECT_EQ(SysTools::removeFiles((directory / ".").c_str(), "(unclosed"), 0);
  EXPECT_EQ(SysTools::removeFiles(nullptr, "tmp"), 0);
  said.str("");
  EXPECT_EQ(SysTools::removeFiles("/nonexistent", "."), 0);
  EXPECT_EQ(said.str(), "Warning: directory /nonexistent can't be opened for reading\n\n");
  EXPECT_TRUE(SysTools::fileExists((directory / "keep").c_str()));
  VandrelleLog::Logger(nullptr);
}

TEST(SysTools, FreeSpaceFindsTheEndOfTheDevice) {
  TestDirectory directory;
  const std::string root = directory / "root";
  const SmallDevice device(32 * 1024);
  EXPECT_TRUE(SysTools::freeSpace(root.c_str(), 32));
  EXPECT_FALSE(SysTools::freeSpace(root.c_str(), 33));
  EXPECT_TRUE(std::filesystem::is_empty(directory / ""));
}

TEST(NameManager, SuffixesShareOneBuffer) {
  NameManager name("some/root", 5);
  char* first = name.suffix(".log");
  EXPECT_STREQ(first, "some/root.log");
  const std::unique_ptr<char[]> copy(name.copySuffix(".prog"));
  EXPECT_STREQ(copy.get(), "some/root.prog");
  EXPECT_STREQ(name.suffix(nullptr), "some/root");
  EXPECT_STREQ(first, "some/root");
  EXPECT_EQ(thrownBy([&] { name.suffix(".progs"); }), "NameManager: Suffix is too large");
  name.base("x");
  EXPECT_STREQ(name.suffix(".12345" + 1), "x12345");
}

TEST(VandrelleLog, TypesGoToTheirStreams) {
  std::ostringstream standard;
  std::ostringstream errors;
  VandrelleLogIostream log(&standard);
  LOG(0, 0, "nobody listens");
  VandrelleLog::Logger(&log);
  log.stream(0, &errors);
  log.stream(1, &errors);
  log.stream(1, nullptr);
  LOG(0, 0, "error " << std::hex << 255);
  LOG(1, 1, "progress");
  LOG(2, 1, "entry " << 255);
  LOG(2, 1, std::string(300, 'x'));
  LOG(2, 1, "short");
  VandrelleLog::Logger(nullptr);
  EXPECT_EQ(errors.str(), "error ff\n");
  EXPECT_EQ(standard.str(), "entry 255\n" + std::string(255, 'x') + "\nshort\n");
}

TEST(VersionControl, StampsAreBigEndianWords) {
  TestDirectory directory;
  const std::string root = directory / "root";
  EXPECT_EQ(VersionControl::getVersion(root.c_str(), 2), 0);
  EXPECT_EQ(fileBytes(root + ".ver"), std::string(12, '\0'));
  VersionControl::setVersion(root.c_str(), 1, 0x01020304);
  EXPECT_EQ(fileBytes(root + ".ver"), std::string("\0\0\0\0\1\2\3\4\0\0\0\0", 12));
  EXPECT_EQ(VersionControl::getVersion(root.c_str(), 1), 0x01020304);
  EXPECT_EQ(VersionControl::getVersion(root.c_str(), 3), 0);
  EXPECT_EQ(VersionControl::getVersion(root.c_str(), -1), 0);
  EXPECT_EQ(thrownBy([] { VersionControl::getVersion("/nonexistent/x", 0); }),
            "Version: could not create /nonexistent/x.ver");
  writeFile(root + ".ver", "cut short");
  VersionControl::setVersion(root.c_str(), 0, 1);
  EXPECT_EQ(fileBytes(root + ".ver"), std::string("\0\0\0\1\0\0\0\0\0\0\0\0", 12));
  const SmallDevice device(0);
  EXPECT_EQ(thrownBy([&] { VersionControl::setVersion(root.c_str(), 0, 1); }),
            "Version: could not write " + root + ".ver");
}

}  // namespace
}  // namespace vandrelle
