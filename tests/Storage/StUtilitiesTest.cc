#include <random>

#include "Storage/StArray.h"
#include "Storage/StMapStorage.h"
#include "Storage/StPosMapBinder.h"
#include "Storage/StPosMapCreator.h"
#include "Storage/StStorageStream.h"
#include "Storage/StorageTestSupport.h"

namespace vandrelle {
namespace {

using Stream = StStorageStream;

std::string counted(int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(i * 7 + i / 256);
  return bytes;
}

class StStorageTest : public DirectoryTest {
 protected:
  const std::string root = directory_ / "s";
};

TEST_F(StStorageTest, MappedReadsToTheLastByteAndRefusesTheRest) {
  const std::string tail = " (file \"" + root + "\")";
  writeFile(root, "abc\x01\x02");
  StMapStorage storage(root.c_str());
  storage.Open(false, false);
  EXPECT_EQ(storage.MaxPos(), StStoragePos(5));
  EXPECT_EQ(storage.Get(4, 1, kStRead, kStDefaultAdvice).data()[0], 2);
  const std::string past = "St: Buffer past end-of-file" + tail;
  EXPECT_EQ(thrownBy([&] { storage.Get(4, 2, kStRead, kStDefaultAdvice); }), past);
  EXPECT_EQ(thrownBy([&] { storage.Get(StStoragePos(1, 0), 1, kStRead, kStDefaultAdvice); }), past);
  StArray<std::uint16_t> numbers(&storage, 1);
  EXPECT_EQ(numbers[1], 0x0102);
  EXPECT_EQ(thrownBy([&] { numbers[2]; }), past);
  writeFile(root, "");
  storage.Open(false, false);
  EXPECT_EQ(storage.MaxPos(), StStoragePos(0));
}

// Against a string that gets the same operations, over several buffers' length.
TEST_F(StStorageTest, BehavesLikeOneRunOfBytes) {
  std::mt19937 random(3);
  std::string model;
  std::size_t at = 0;
  Stream stream(root.c_str(), Stream::kRead | Stream::kWrite);
  const std::string source = counted(10000);
  for (int step = 0; step < 3000; ++step) {
    const auto length = static_cast<unsigned>(random() % (step % 50 == 0 ? 9000 : 200));
    switch (random() % 5) {
      case 0:
      case 1: {
        const std::string piece = source.substr(random() % 1000, length);
        ASSERT_EQ(stream.write(piece.data(), length), length);
        model.replace(std::min(at, model.size()), std::min<std::size_t>(length, model.size() - at),
                      piece);
        at += length;
        break;
      }
      case 2: {
        std::string piece(length, '\0');
        piece.resize(stream.read(piece.data(), length));
        ASSERT_EQ(piece, model.substr(at, length));
        at += piece.size();
        break;
      }
      case 3:
        at = random() % (model.size() + 1);
        ASSERT_EQ(stream.seek(static_cast<uint32>(at), Stream::kAbsolute), 1);
        break;
      default:
        ASSERT_EQ(stream.peek(), at < model.size() ? static_cast<unsigned char>(model[at]) : -1);
        if (step % 100 == 0) {
          stream.flush();
          ASSERT_EQ(fileBytes(root), model);
        }
    }
    ASSERT_EQ(stream.tell(), StStoragePos(static_cast<uint32>(at)));
  }
  stream.close();
  EXPECT_EQ(fileBytes(root), model);
}

TEST_F(StStorageTest, SeeksInsideOnly) {
  Stream stream(root.c_str(), Stream::kRead | Stream::kWrite);
  stream.write("0123456789", 10);
  struct Case {
    uint32 pos;
    int mode, result;
    uint32 after;
  } cases[] = {{11, Stream::kAbsolute, 0, 10}, {0, Stream::kFromEnd, 1, 10},
               {3, Stream::kFromEnd, 1, 7},    {4, Stream::kForward, 0, 7},
               {3, Stream::kForward, 1, 10},   {11, Stream::kBackward, 0, 10},
               {4, Stream::kBackward, 1, 6},   {7, Stream::kBackward, 0, 6},
               {0, Stream::kAbsolute, 1, 0},   {10, Stream::kAbsolute, 1, 10}};
  for (const Case& c : cases) {
    EXPECT_EQ(stream.seek(c.pos, c.mode), c.result) << c.pos << ' ' << c.mode;
    EXPECT_EQ(stream.tell(), StStoragePos(c.after));
  }
}

TEST_F(StStorageTest, ModesDecideWhatIsOpened) {
  EXPECT_NE(thrownBy([&] { Stream(root.c_str(), Stream::kRead); }), "");
  EXPECT_NE(thrownBy([&] { Stream(root.c_str(), 7); }), "");
  {
    Stream stream(root.c_str(), 11);
    EXPECT_EQ(stream.write("one", 4), 4u);
  }
  {
    Stream stream(root.c_str(), 11);
    EXPECT_EQ(stream.tell(), StStoragePos(4));
    stream.write("two", 4);
  }
  {
    Stream stream(root.c_str(), Stream::kRead);
    EXPECT_EQ(stream.put('x'), 0);
    char text[8];
    EXPECT_EQ(stream.getString(text), 1);
    EXPECT_STREQ(text, "one");
    EXPECT_EQ(stream.getString(text, 3), 1);
    EXPECT_STREQ(text, "tw");
    EXPECT_EQ(stream.get(), 'o');
    EXPECT_EQ(stream.get(), 0);
    EXPECT_EQ(stream.get(), -1);
    EXPECT_EQ(stream.getString(text), 0);
    // A storage that is open for reading only is no place for a writer.
    StStorage* storage = stream.storage();
    EXPECT_EQ(thrownBy([&] { Stream(storage, 3); }), "St: Can't write to a read-only storage!");
  }
  {
    Stream stream(root.c_str(), Stream::kWrite);
    stream.write("longer than a word", 18);
    EXPECT_EQ(stream.peek(), -1);
    stream.seek(2, Stream::kAbsolute);
    stream.put('N');
    stream.close();
    EXPECT_EQ(stream.put('x') + stream.get(), -1);
  }
  EXPECT_EQ(fileBytes(root), "loNger than a word");
}

TEST(StPosMap, BytesOfASmallMap) {
  TestDirectory directory;
  const std::string file = directory / "m";
  const auto bytes = [&](std::initializer_list<uint32> positions) {
    {
      StPosMapCreator creator(file.c_str(), 2);
      for (uint32 pos : positions) creator.add(pos);
    }
    return fileBytes(file);
  };
  EXPECT_EQ(bytes({127, 255, 300}), std::string("PsMp\0\0\0\2\0\0\0\2\0\0\0\x14"
                                                "\x7f\x80\x01\x2d"
                                                "\0\0\0\0\0\0\0\0\0\0\0\0"
                                                "\0\0\0\0\0\0\0\xff\0\0\0\3",
                                                44));
  EXPECT_EQ(bytes({}), std::string("PsMp\0\0\0\2\0\0\0\0\0\0\0\x10", 16));
  EXPECT_EQ(StPosMapBinder(file.c_str()).lookup(0), StStoragePos(0));
}

TEST(StPosMap, EveryKeyIsFound) {
  TestDirectory directory;
  const std::string file = directory / "m";
  for (int count : {1, 3, 4, 5, 1000}) {
    std::vector<StStoragePos> positions(1);
    std::mt19937 random(5);
    {
      StPosMapCreator creator(file.c_str(), 4);
      for (int i = 0; i < count; ++i) {
        const uint32 steps[] = {0, 127, 128, 0xFFFFFFFF, static_cast<uint32>(random())};
        positions.push_back(positions.back() + steps[random() % 5]);
        creator.add(positions.back());
      }
    }
    StPosMapBinder binder(file.c_str());
    for (int key = count; key >= 0; --key) {
      ASSERT_EQ(binder.lookup(static_cast<uint32>(key)), positions[static_cast<std::size_t>(key)]);
    }
    EXPECT_EQ(thrownBy([&] {
                binder.lookup(static_cast<uint32>(count) + 100000);
              }).find("St: Position map has no key"),
              0u);
  }
}

TEST(StPosMap, DamagedMapsAreErrors) {
  TestDirectory directory;
  const std::string file = directory / "m";
  {
    StPosMapCreator creator(file.c_str(), 3);
    for (uint32 i = 0; i < 40; ++i) creator.add(i * i * i);
  }
  const std::string sound = fileBytes(file);
  std::unique_ptr<StPosMapBinder> binder;
  const auto exercised = [&] {
    return thrownBy([&] {
      binder = std::make_unique<StPosMapBinder>(file.c_str());
      for (uint32 key = 0; key < 50; ++key) binder->lookup(key % 41);
    });
  };
  EXPECT_EQ(exercised(), "");
  for (std::size_t length = 0; length < sound.size(); ++length) {
    writeFile(file, sound.substr(0, length));
    EXPECT_NE(exercised(), "") << length;
  }
  for (std::size_t bit = 0; bit < 8 * sound.size(); ++bit) {
    writeFile(file, flipped(sound, bit / 8, 1 << bit % 8));
    exercised();
  }
  // A million bytes of anything; then with a header that leads into them.
  for (const std::string& header : {noise(16), std::string("PsMp\0\0\1\0\0\0\1\0\0\1\0\0", 16),
                                    std::string("PsMp\xff\xff\xff\xff\0\0\0\1\0\x0f\0\0", 16)}) {
    writeFile(file, header + noise(1000000));
    exercised();
  }
}

}  // namespace
}  // namespace vandrelle
