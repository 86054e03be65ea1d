#include "Index/IkDataFileBinder.h"

#include "IkPairCollector.h"
#include "IkTestTools.h"
#include "Index/IkDataFileCreator.h"

namespace vandrelle {
namespace {

using IkDataFileBinderTest = DirectoryTest;

Pairs currentRow(IkDataFileBinder* binder) {
  PairCollector collector;
  binder->unpackRow(&collector);
  return collector.pairs;
}

std::vector<IkDocumentInfo> everyThird(int pairs) {
  std::vector<IkDocumentInfo> row;
  for (int i = 0; i < pairs; ++i) row.push_back({3 * i, 2});
  return row;
}

// Rows around the sizes at which the work buffer grows and the reader's windows
// end, walked and sought, in every way of opening.
TEST_F(IkDataFileBinderTest, ReadsBackRowsOfAllSizes) {
  const std::string root = directory_ / "sizes";
  const int sizes[] = {1, 2700, 5, 340, 341, 342, 4096, 3, 300000, 1, 2};
  std::vector<StStoragePos> offsets;
  {
    IkDataFileCreator creator;
    creator.create((root + ".dat").c_str(), 1025);
    for (int size : sizes) {
      offsets.push_back(creator.offset());
      creator.writeRow(everyThird(size).data(), size, static_cast<float>(size));
    }
  }
  const struct {
    int mode;
    int mmap;
  } ways[] = {{0, 0}, {0, 1}, {1, 0}};
  for (const auto& way : ways) {
    IkDataFileBinder binder;
    binder.bind(root.c_str(), way.mode, way.mmap);
    std::size_t rows = 0;
    for (; binder.more(); binder.next(), ++rows) {
      ASSERT_EQ(binder.tell(), offsets[rows]);
      ASSERT_EQ(binder.scale(), static_cast<float>(sizes[rows]));
      const Pairs pairs = currentRow(&binder);
      ASSERT_EQ(static_cast<int>(pairs.size()), sizes[rows]);
      ASSERT_EQ(pairs.back(), std::make_pair(3 * sizes[rows] - 3, 2));
    }
    EXPECT_EQ(rows, std::size(sizes));
    EXPECT_EQ(binder.scale(), 0.0f);

    for (std::size_t row : {8, 0, 9, 4, 3, 8}) {
      binder.seek(offsets[row]);
      ASSERT_EQ(static_cast<int>(currentRow(&binder).size()), sizes[row]);
    }
    binder.seek(offsets[1]);
    const int size = static_cast<int>(binder.dataSize());
    IkDataRowBuffer* buffer = binder.rowBuffer();
    binder.seek(offsets[8]);
    int pairs = 0;
    IkDataFile::unpackPairs(buffer->data(), size, [&](int, int) { ++pairs; });
    EXPECT_EQ(pairs, 2700);
    delete buffer;
  }
}

TEST_F(IkDataFileBinderTest, DamagedFilesThrow) {
  const std::string root = directory_ / "damaged";
  const std::string row("\0\0\0\2\x3F\x80\0\0\x80\1\0\0", 12);
  const struct {
    const char* what;
    std::string bytes;
  } cases[] = {
      {"ends within a header", row + row.substr(0, 7)},
      {"ends within a row", row + row.substr(0, 9)},
      {"a size beyond the file", row + std::string("\x7F\xFF\xFF\xFF", 4) + row.substr(4)},
      {"ends within a pair", row + std::string("\0\0\0\2\x3F\x80\0\0\1\1\0\0", 12)},
  };
  for (const auto& c : cases) {
    writeBytes(root + ".dat", c.bytes);
    for (int mmap : {0, 1}) {
      IkDataFileBinder binder;
      PairCollector collector;
      collector.pairs.reserve(8);
      EXPECT_EQ(thrownBy([&] {
                  binder.bind(root.c_str(), 0, mmap);
                  for (; binder.more(); binder.next()) binder.unpackRow(&collector);
                }).substr(0, 3),
                "Ik:")
          << c.what;
      EXPECT_EQ(collector.pairs, (Pairs{{1, 1}})) << c.what;
    }
  }
  writeBytes(root + ".dat", row);
  writeBytes(root + ".xk", std::string("\0\0\1\0\0\0\0\1\x20", 9));
  IkDataFileBinder binder;
  EXPECT_EQ(thrownBy([&] { binder.bind(root.c_str(), 0, 0); }).substr(0, 3), "Ik:");
}

}  // namespace
}  // namespace vandrelle
