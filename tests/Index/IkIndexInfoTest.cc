#include "Index/IkIndexInfo.h"

#include <cstdio>

#include "IkTestTools.h"

namespace vandrelle {
namespace {

TEST(IkIndexInfo, KeepsTheLayoutOfItsFile) {
  const std::string path = testing::TempDir() + "layout.info";
  IkIndexInfo info;
  info.numTerms = 0x01020304;
  info.totalNumChunks = 2;
  info.bufferSize = 32768;
  info.minDocumentLength = 400.0f;
  info.similarityVersion = -1;
  info.numDeletedChunks = 9;
  info.write(path.c_str());
  const std::string expected(
      "\1\2\3\4\0\0\0\2\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x80\0\x43\xC8\0\0\xFF\xFF\xFF\xFF\0\0\0\x9",
      36);
  EXPECT_EQ(bytesOf(path), expected);

  // A file of the older layout, and what a rewrite makes of it.
  writeBytes(path, expected.substr(0, 32));
  IkIndexInfo old;
  old.numDeletedChunks = 5;
  old.read(path.c_str());
  EXPECT_EQ(old.numTerms, 0x01020304);
  EXPECT_EQ(old.minDocumentLength, 400.0f);
  EXPECT_EQ(old.numDeletedChunks, 0);
  old.write(path.c_str());
  EXPECT_EQ(bytesOf(path).size(), 36u);
}

TEST(IkIndexInfo, RefusesWhatIsNoHeader) {
  const std::string path = testing::TempDir() + "short.info";
  const std::string expected = "IkIO: Couldn't read index information from '" + path + "'";
  std::remove(path.c_str());
  IkIndexInfo info;
  EXPECT_EQ(thrownBy([&] { info.read(path.c_str()); }), expected);
  for (std::size_t size : {0, 31, 33}) {
    writeBytes(path, std::string(size, '\1'));
    EXPECT_EQ(thrownBy([&] { info.read(path.c_str()); }), expected) << size;
  }
}

}  // namespace
}  // namespace vandrelle
