#include "Storage/StFileStorage.h"

#include <sys/stat.h>

#include <cstring>

#include "Storage/StAppendBuffer.h"
#include "Storage/StStorageHandle.h"
#include "Storage/StorageTestSupport.h"

namespace vandrelle {
namespace {

constexpr uint32 kFile = StFileStorage::kFileBytes;

std::string at(StStorage& storage, const StStoragePos& pos, StStorageLen len) {
  StStorageHandle handle = storage.Get(pos, len, kStRead, kStDefaultAdvice);
  return std::string(reinterpret_cast<char*>(handle.data()), len);
}

void putAt(StStorage& storage, const StStoragePos& pos, const std::string& bytes) {
  StStorageHandle handle =
      storage.Get(pos, static_cast<StStorageLen>(bytes.size()), kStWrite, kStDefaultAdvice);
  std::memcpy(handle.data(), bytes.data(), bytes.size());
  handle.markDirty();
}

class StFileStorageTest : public DirectoryTest {
 protected:
  const std::string root = directory_ / "s";
};

TEST(StStoragePos, CarriesDividesAndPrints) {
  StStoragePos pos(0xFFFFFFFF);
  pos += 1;
  EXPECT_EQ(pos, StStoragePos(1, 0));
  EXPECT_EQ(pos - StStoragePos(0xFFFFFFFF), StStoragePos(1));
  uint32 remainder = 7;
  EXPECT_EQ(StStoragePos().Divide(kFile, &remainder), 0u);
  EXPECT_EQ(remainder, 0u);
  EXPECT_EQ(StStoragePos(0x12, 0x34).Divide(kFile, &remainder), 36u);
  EXPECT_EQ(remainder, 0x240034u);
  pos.SetToProduct(0xFFFFFFFF, 0xFFFFFFFF);
  EXPECT_EQ(pos, StStoragePos(0xFFFFFFFE, 1));
  EXPECT_FALSE(StStoragePos::InvalidStorage().valid());
  EXPECT_TRUE(StStoragePos(0xFFFFFFFF, 1).valid());
  std::ostringstream os;
  os << StStoragePos(0xa, 0xb) << ' ' << StStoragePos(0xABC);
  EXPECT_EQ(os.str(), "a0000000b abc");
}

TEST_F(StFileStorageTest, BytesComeBackWhateverTheBuffersAre) {
  {
    StFileStorage storage(root.c_str(), true);
    storage.Initialize();
    StAppendBuffer out(&storage, 7);
    for (int i = 0; i < 20000; ++i) out.put(static_cast<unsigned char>(i * 31));
    out.put("0123456789", 10);
    EXPECT_EQ(out.tellp(), StStoragePos(20010));
  }
  ASSERT_EQ(fileBytes(root).size(), 20010u);
  for (bool mapped : {true, false}) {
    StFileStorage storage(root.c_str(), mapped);
    storage.Open(false, false);
    EXPECT_EQ(at(storage, 20000, 10), "0123456789");
    EXPECT_EQ(at(storage, 5000, 9000), fileBytes(root).substr(5000, 9000));
    EXPECT_EQ(at(storage, 4096, 0), "");
    EXPECT_EQ(thrownBy([&] { at(storage, 20000, 11); }),
              "St: Block past end of read-only storage! (file \"" + root + "\")");
    EXPECT_EQ(thrownBy([&] { at(storage, StStoragePos(0xFFFFFFFF, 0xFFFFFFF0), 100); }),
              "St: Block past end of read-only storage! (file \"" + root + "\")");
    EXPECT_EQ(thrownBy([&] { storage.GetAtEnd(1); }), "St: Can't extend read-only storage!");
  }
}

TEST_F(StFileStorageTest, OnlyDirtyBuffersAreWrittenAndWriteBuffersAreNotReadIn) {
  writeFile(root, "abcdef");
  StFileStorage storage(root.c_str(), true);
  storage.Open(true, true);
  {
    StStorageHandle clean = storage.Get(0, 6, kStReadWrite, kStDefaultAdvice);
    std::memset(clean.data(), 'x', 6);
  }
  EXPECT_EQ(fileBytes(root), "abcdef");
  StStorageHandle first = storage.Get(2, 2, kStReadWrite, kStDefaultAdvice);
  EXPECT_EQ(first.data()[0], 'c');
  first.data()[0] = 'C';
  StStorageHandle second(first);
  second.markDirty();
  first.release();
  EXPECT_EQ(fileBytes(root), "abcdef");
  second.release();
  EXPECT_EQ(fileBytes(root), "abCdef");
  StStorageHandle unread = storage.Get(0, 6, kStWrite, kStDefaultAdvice);
  EXPECT_NE(unread.data()[0], 'a');
  // Reaching beyond the end grows the storage; the gap's bytes are zeros.
  StStorageHandle longer = storage.Get(4, 4, kStReadWrite, kStDefaultAdvice);
  longer.markDirty();
  longer.release();
  EXPECT_EQ(fileBytes(root), std::string("abCdef\0\0", 8));
}

TEST_F(StFileStorageTest, ChangesFromFileToDirectoryAtTheLimit) {
  {
    StFileStorage storage(root.c_str(), true);
    storage.Initialize();
    storage.SetMaxPos(kFile - 1);  // sparse
    StStorageHandle grown = storage.GetAtEnd(2);
    std::memcpy(grown.data(), "yz", 2);
    grown.markDirty();
    grown.release();
    EXPECT_EQ(storage.MaxPos(), StStoragePos(kFile) + 1);
    EXPECT_EQ(at(storage, kFile - 1, 2), "yz");
  }
  EXPECT_EQ(std::filesystem::file_size(root + "/00000000"), kFile);
  EXPECT_EQ(fileBytes(root + "/00000001"), "z");
  EXPECT_FALSE(std::filesystem::exists(root + ".move"));
  {
    StFileStorage storage(root.c_str(), true);
    storage.Open(false, false);
    EXPECT_EQ(at(storage, kFile - 3, 4), std::string("\0\0yz", 4));
    EXPECT_EQ(at(storage, kFile, 1), "z");
    EXPECT_EQ(at(storage, kFile - 1, 1), "y");
  }
  StFileStorage storage(root.c_str(), true);
  storage.Open(true, true);
  storage.SetMaxPos(5);
  EXPECT_FALSE(std::filesystem::exists(root + "/00000001"));
  EXPECT_EQ(std::filesystem::file_size(root + "/00000000"), 5u);
  storage.SetMaxPos(kFile);  // a boundary has a next, empty file
  EXPECT_EQ(std::filesystem::file_size(root + "/00000001"), 0u);
  putAt(storage, kFile, "w");
  EXPECT_EQ(fileBytes(root + "/00000001"), "w");
}

TEST_F(StFileStorageTest, InitializeClearsBothForms) {
  for (bool single : {true, false, false, true, true}) {
    StFileStorage storage(root.c_str(), true);
    storage.StartWithSingleFile(single);
    storage.Initialize();
    EXPECT_EQ(storage.MaxPos(), StStoragePos(0));
    EXPECT_EQ(std::filesystem::is_directory(root), !single);
    putAt(storage, 0, "abc");
    EXPECT_EQ(fileBytes(single ? root : root + "/00000000"), "abc");
  }
}

TEST_F(StFileStorageTest, Failures) {
  const std::string tail = " (file \"" + root + "\")";
  StFileStorage storage(root.c_str(), true);
  EXPECT_EQ(thrownBy([&] { storage.Open(false, false); }),
            "St: Couldn't open file (file \"" + root + "\": No such file or directory)");
  EXPECT_EQ(thrownBy([&] { storage.MaxPos(); }), "St: Storage is not open!" + tail);
  EXPECT_EQ(thrownBy([&] { storage.Flush(); }), "St: Can't flush read-only storage!" + tail);
  EXPECT_EQ(thrownBy([&] { storage.SetMaxPos(1); }),
            "St: Can't call SetMaxPos on read-only storage!" + tail);
  storage.Open(true, true);
  EXPECT_EQ(thrownBy([&] { storage.Root("other"); }), "St: Can't set root on open storage" + tail);
  EXPECT_EQ(thrownBy([&] { storage.Initialize(); }), "St: Can't initialize open storage!" + tail);
  EXPECT_EQ(thrownBy([&] { putAt(storage, 1, "a"); }),
            "St: Can't extend storage by more than 2^31!" + tail);
  StFileStorage rootless(nullptr, true);
  EXPECT_EQ(thrownBy([&] { rootless.Initialize(); }),
            "St: Must specify root before initializing (file \"\")");
}

// A middle file that lost its tail is read, not mapped, so that the loss is an
// error instead of the end of the process.
TEST_F(StFileStorageTest, ShortenedFilesAreErrors) {
  std::filesystem::create_directory(root);
  writeFile(root + "/00000000", "abc");
  writeFile(root + "/00000001", "d");
  StFileStorage storage(root.c_str(), true);
  storage.Open(false, false);
  EXPECT_EQ(at(storage, 1, 2), "bc");
  EXPECT_EQ(thrownBy([&] { at(storage, 100000, 8); }).substr(0, 16), "St: Couldn't rea");
  std::filesystem::remove(root + "/00000000");
  StFileStorage headless(root.c_str(), true);
  EXPECT_EQ(thrownBy([&] { headless.Open(false, false); }).substr(0, 24),
            "St: Couldn't open file (");
}

}  // namespace
}  // namespace vandrelle
