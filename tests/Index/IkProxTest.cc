#include "IkTestTools.h"
#include "Index/IkDataFile.h"
#include "Index/IkMergeTempfile.h"
#include "Index/IkProxBinder.h"
#include "Index/IkProxCreator.h"
#include "Index/IkTempfile.h"
#include "Storage/StPosMapCreator.h"

namespace vandrelle {
namespace {

TEST(IkProx, CodesGapsInSevenBits) {
  const std::string path = testing::TempDir() + "coding.prx";
  {
    IkProxCreator creator(path.c_str());
    creator.add(0);
    creator.add(127);
    creator.add(255);
    EXPECT_EQ(creator.tell(), StStoragePos(4));
    creator.reset();
    creator.add(5);
    creator.add(5);
    creator.writenum(300);
    creator.writenum(0xFFFFFFFFu);
  }
  EXPECT_EQ(bytesOf(path), std::string("\0\x7F\x80\x01\x05\0\xAC\x02\xFF\xFF\xFF\xFF\x0F", 13));

  IkProxBinder binder(path.c_str());
  for (uint32 position : {0, 127, 255}) EXPECT_EQ(binder.get(), position);
  binder.reset();
  EXPECT_EQ(binder.get(), 5u);
  EXPECT_EQ(binder.tell(), StStoragePos(5));
  EXPECT_EQ(binder.get(), 5u);
  EXPECT_EQ(binder.readnum(), 300u);
  EXPECT_EQ(binder.readnum(), 0xFFFFFFFFu);
  EXPECT_EQ(thrownBy([&] { binder.readnum(); }), "St: Attempt to read past end of file!");
  binder.seek(StStoragePos(2));
  EXPECT_EQ(binder.readnum(), 128u);
}

TEST(IkProx, FindsWordsByTheMap) {
  const std::string path = testing::TempDir() + "words.prx";
  {
    IkProxCreator creator(path.c_str());
    StPosMapCreator map((path + ".map").c_str(), 128);
    for (uint32 word = 0; word < 300; ++word) {
      creator.reset();
      for (uint32 i = 0; i < word % 3; ++i) creator.add(word + i);
      map.add(creator.tell());
    }
    map.add(creator.tell());
  }
  IkProxBinder binder(path.c_str());
  for (uint32 word : {0u, 1u, 2u, 127u, 128u, 299u}) {
    const std::unique_ptr<IkProxBuffer> buffer(binder.getBuffer(word));
    const IkProxBufferState begin = buffer->state();
    for (uint32 i = 0; i < word % 3; ++i) EXPECT_EQ(buffer->get(), word + i);
    EXPECT_EQ(thrownBy([&] { buffer->get(); }), "Ik: Attempt to read past the positions of a word");
    buffer->state(begin);
    if (word % 3 == 0) continue;
    EXPECT_EQ(buffer->readnum(), word);
  }
}

// A chunk whose occurrences are in two files and too many to be counted keeps as many
// positions as its row says.
TEST(IkProx, SplitChunksStopAtTheLargestFrequency) {
  const std::string root = testing::TempDir() + "split";
  const std::string names[] = {root + "0", root + "1"};
  for (const uint32 file : {0, 1}) {
    const uint32 count = file == 0 ? IkDataFile::kMaxFrequency - 1 : 3;
    IkTempfile words(names[file].c_str());
    words.writeWord(WmLocalWord("often").word());
    words.addChunk(0, static_cast<int>(count));
    words.writeLine();
    words.writeEOF();
    IkProxCreator positions((names[file] + "p").c_str());
    for (uint32 i = 0; i < count; ++i) positions.add(file * 40000 + i);
  }
  for (const bool dense : {true, false}) {
    {
      IkProxCreator out((root + "out").c_str());
      int row[2] = {};
      int pairs = 0;
      for (const std::string& name : names) {
        IkMergeTempfile source(name.c_str(), (name + "p").c_str());
        source.word();
        source.maxElements();
        if (dense) {
          source.unpack(row, 2, &pairs, &out);
        } else {
          source.unpackSparse(reinterpret_cast<IkDocumentInfo*>(row), &pairs, &out);
        }
      }
    }
    const std::string gaps = bytesOf(root + "out");
    ASSERT_EQ(gaps.size(), IkDataFile::kMaxFrequency + 1u);
    EXPECT_EQ(gaps.substr(gaps.size() - 3), "\1\xC3\x38");  // 1, and 7235 to the last
  }
}

TEST(IkProx, DamagedFilesThrow) {
  const std::string path = testing::TempDir() + "damaged.prx";
  writeBytes(path, std::string(6, '\xFF'));
  IkProxBinder binder(path.c_str());
  EXPECT_EQ(thrownBy([&] { binder.readnum(); }), "Ik: A number of the proximity file is too long");
  {
    StPosMapCreator map((path + ".map").c_str(), 128);
    map.add(StStoragePos(3));
    map.add(StStoragePos(70));
  }
  EXPECT_EQ(thrownBy([&] { binder.getBuffer(1); }),
            "Ik: The positions of word 1 are outside of their file");
}

}  // namespace
}  // namespace vandrelle
