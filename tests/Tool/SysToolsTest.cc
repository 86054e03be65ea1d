#include "Tool/SysTools.h"

#include <sstream>

#include "SmallDevice.h"
#include "Storage/StorageTestSupport.h"
#include "TestLog.h"
#include "Tool/NameManager.h"
#include "Tool/VersionControl.h"

namespace vandrelle {
namespace {

using SysToolsTest = DirectoryTest;

TEST_F(SysToolsTest, RemovesFilesByExpression) {
  for (const char* name : {"a.tmp1", "b.tmp", "tmp.c", "keep"}) writeFile(directory_ / name, "");
  const TestLog log;
  EXPECT_EQ(SysTools::removeFiles((directory_ / ".").c_str(), "\\.tmp"), 2);
  EXPECT_EQ(SysTools::removeFiles((directory_ / "").c_str(), "^tmp"), 1);
  EXPECT_EQ(SysTools::removeFiles((directory_ / ".").c_str(), "(unclosed"), 0);
  EXPECT_EQ(SysTools::removeFiles(nullptr, "tmp"), 0);
  EXPECT_EQ(SysTools::removeFiles("/nonexistent", "."), 0);
  EXPECT_EQ(log.lines().back(), "0:Warning: directory /nonexistent can't be opened for reading\n");
  EXPECT_TRUE(SysTools::fileExists((directory_ / "keep").c_str()));
}

TEST_F(SysToolsTest, FreeSpaceFindsTheEndOfTheDevice) {
  const std::string root = directory_ / "root";
  const SmallDevice device(32 * 1024);
  EXPECT_TRUE(SysTools::freeSpace(root.c_str(), 32));
  EXPECT_FALSE(SysTools::freeSpace(root.c_str(), 33));
  EXPECT_TRUE(std::filesystem::is_empty(directory_ / ""));
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

TEST_F(SysToolsTest, VersionStampsAreBigEndianWords) {
  const std::string root = directory_ / "root";
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
