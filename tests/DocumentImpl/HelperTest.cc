#include <unistd.h>

#include <iterator>

#include "Document/IntakeFixture.h"
#include "DocumentImpl/DiHelperDistributor.h"
#include "DocumentImpl/DiRenameFileHandler.h"
#include "DocumentImpl/DiZipFileHandler.h"

namespace vandrelle {
namespace {

class HelperTest : public IntakeTest {};

TEST_F(HelperTest, TypesShareHelpersByNumber) {
  DiHelperDistributor distributor("root");
  EXPECT_EQ(distributor.helpers(1)->lexer, distributor.helpers(15)->lexer);
  EXPECT_EQ(distributor.helpers(10)->headerParser, distributor.helpers(14)->headerParser);
  EXPECT_NE(distributor.helpers(2)->headerParser, distributor.helpers(6)->headerParser);
  EXPECT_EQ(distributor.helpers(1)->headerParser, nullptr);
  EXPECT_EQ(distributor.helpers(1)->handler, distributor.helpers(2)->handler);
  for (const int type : {-5, 0, 17, 63, 64, 2047, 40000}) {
    EXPECT_EQ(distributor.helpers(type)->lexer, nullptr) << type;
    EXPECT_NE(distributor.helpers(type)->handler, nullptr) << type;
    EXPECT_EQ(distributor.multiDocFiles(type), 1) << type;
  }
}

TEST_F(HelperTest, RenamesOnlyWhatWasRead) {
  const std::string added = write("added", "x");
  const std::string read = write("it's read; really", "x");
  {
    DiRenameFileHandler handler(".ix");
    handler.Close(handler.Open(added.c_str()));
    handler.setMode(1);
    for (int twice = 0; twice < 2; ++twice) handler.Close(handler.Open(read.c_str()));
    EXPECT_EQ(handler.Open(path("missing").c_str()), nullptr);
    EXPECT_TRUE(std::filesystem::exists(read));
  }
  EXPECT_TRUE(std::filesystem::exists(added));
  EXPECT_FALSE(std::filesystem::exists(read));
  EXPECT_TRUE(std::filesystem::exists(read + ".ix"));
}

TEST_F(HelperTest, CompressedFiles) {
  const auto compressed = [&](const char* name, const std::string& text) {
    EXPECT_EQ(std::system(("gzip -nf \"" + write(name, text) + "\"").c_str()), 0);
    return path(name) + ".gz";
  };
  const auto bytesOf = [](std::ifstream* stream) {
    return std::string(std::istreambuf_iterator<char>(*static_cast<std::istream*>(stream)), {});
  };
  const auto temporaries = [] {
    const std::string mine = std::to_string(getpid()) + ".";
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
      count += entry.path().filename().string().starts_with(mine);
    }
    return count;
  };
  DiZipFileHandler handler;
  std::ifstream* first = handler.Open(compressed("it's one", "first").c_str());
  std::ifstream* second = handler.Open(compressed("two", "second").c_str());
  EXPECT_EQ(temporaries(), 2);
  EXPECT_EQ(bytesOf(second), "second");
  EXPECT_EQ(bytesOf(first), "first");
  first->clear();
  first->seekg(2);
  EXPECT_EQ(bytesOf(first), "rst");
  handler.Close(first);
  handler.Close(second);
  EXPECT_TRUE(log_.lines().empty());

  for (const std::string& file : {write("no.gz", "not compressed"), path("absent.gz")}) {
    std::ifstream* stream = handler.Open(file.c_str());
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(bytesOf(stream), "");
    handler.Close(stream);
    EXPECT_TRUE(logged("0:status 1 from the decompression of " + file));
  }
  EXPECT_EQ(temporaries(), 0);

  if (std::filesystem::exists("/usr/local/bin/gunzip")) return;
  // Without any decompressor the child ends, and does not run on as a second self.
  const std::string searched = getenv("PATH");
  setenv("PATH", "/nonexistent", 1);
  std::ifstream* stream = handler.Open(path("two.gz").c_str());
  setenv("PATH", searched.c_str(), 1);
  EXPECT_EQ(bytesOf(stream), "");
  handler.Close(stream);
  EXPECT_TRUE(logged("0:status 127 from the decompression of " + path("two.gz")));
}

}  // namespace
}  // namespace vandrelle
