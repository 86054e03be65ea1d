// Rows by the byte: their packing, and both ways to read them.

#include "Index/IkDataFile.h"

#include <random>

#include "Document/DcStructureMap.h"
#include "IkPairCollector.h"
#include "IkTestTools.h"
#include "Index/IkDeleterVector.h"
#include "Index/IkUnpacker.h"

namespace vandrelle {
namespace {

using Bytes = std::vector<unsigned char>;
using Row = std::vector<IkDocumentInfo>;

// A row of pairs, or the frequencies of all chunks.
template <typename Element>
Bytes packed(const std::vector<Element>& row) {
  Bytes bytes(4096);
  const int size = IkDataFile::packBuffer(row.data(), static_cast<int>(row.size()), bytes.data(),
                                          static_cast<int>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

class TenChunksAStructure : public DcStructureMap {
 public:
  int numChunks() override { return 0; }
  int structure(int chunk, int, int*) override { return chunk / 10; }
};

Pairs unpacked(const Bytes& bytes, IkDeleter* deleter = nullptr, DcStructureMap* map = nullptr) {
  PairCollector collector;
  // An exact copy on the heap, so that a read past it shows.
  const Bytes exact(bytes);
  IkDataFile::unpackBuffer(exact.data(), static_cast<int>(exact.size()), 1.0f, &collector, deleter,
                           map);
  return collector.pairs;
}

TEST(IkDataFile, PacksByTheByte) {
  const struct {
    const char* what;
    Row row;
    Bytes bytes;
  } cases[] = {
      {"one pair", {{0, 1}}, {0x80, 0x00}},
      {"widest of 2 bytes", {{0x7EFE, 1}}, {0xFE, 0xFE}},
      {"first of 3 bytes", {{0x7EFF, 1}}, {0xFF, 3, 0x80, 0x7E, 0xFF}},
      {"widest of 3 bytes", {{0x7EFFFE, 2}}, {0xFF, 3, 0x7E, 0xFF, 0xFE, 2}},
      {"first of 4 bytes", {{0x7EFFFF, 1}}, {0xFF, 4, 0x80, 0x7E, 0xFF, 0xFF}},
      {"frequencies",
       {{1, 127}, {2, 128}, {3, 255}, {4, 32767}},
       {0, 1, 127, 0, 1, 0x80, 128, 0, 1, 0x80, 255, 0, 1, 0xFF, 0xFF}},
      {"no frequency, no pair", {{1, 1}, {5, 0}, {9, 1}}, {0x80, 1, 0x80, 8}},
      {"four gaps behind are too few",
       {{200, 1}, {201, 1}, {202, 1}, {203, 1}, {204, 1}, {205, 1}},
       {0x80, 200, 0x80, 1, 0x80, 1, 0x80, 1, 0x80, 1, 0x80, 1}},
      {"five gaps behind narrow to 1 byte",
       {{200, 1}, {201, 1}, {202, 1}, {203, 1}, {204, 1}, {205, 1}, {331, 1}},
       {0x80, 200, 0xFF, 1, 0x81, 0x81, 0x81, 0x81, 0x81, 0xFE}},
      {"three gaps behind narrow by 2",
       {{0x10000, 1}, {0x10001, 1}, {0x10002, 1}, {0x10003, 1}, {0x10004, 1}},
       {0xFF, 3, 0x81, 0, 0, 0xFF, 1, 0x81, 0x81, 0x81, 0x81}},
      {"two gaps behind narrow by 3",
       {{0x800000, 1}, {0x800001, 1}, {0x800002, 1}, {0x800003, 1}},
       {0xFF, 4, 0x80, 0x80, 0, 0, 0xFF, 1, 0x81, 0x81, 0x81}},
      {"a gap of 2 bytes behind forbids 1",
       {{0x10000, 1}, {0x10001, 1}, {0x10002, 1}, {0x100FF, 1}, {0x10100, 1}, {0x10101, 1}},
       {0xFF, 3, 0x81, 0, 0, 0x80, 0, 1, 0x80, 0, 1, 0x80, 0, 0xFD, 0x80, 0, 1, 0x80, 0, 1}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(packed(c.row), c.bytes) << c.what;
    std::vector<int> dense(static_cast<std::size_t>(c.row.back().chunk) + 1);
    Pairs pairs;
    for (const IkDocumentInfo& pair : c.row) {
      dense[static_cast<std::size_t>(pair.chunk)] = pair.frequency;
      if (pair.frequency != 0) pairs.emplace_back(pair.chunk, pair.frequency);
    }
    EXPECT_EQ(packed(dense), c.bytes) << c.what;
    EXPECT_EQ(unpacked(c.bytes), pairs) << c.what;
  }
}

TEST(IkDataFile, AsksForRoomBeforeEachEntry) {
  const Row two = {{1, 1}, {2, 1}};
  unsigned char bytes[12];
  EXPECT_EQ(IkDataFile::packBuffer(two.data(), 1, bytes, 9), -1);
  EXPECT_EQ(IkDataFile::packBuffer(two.data(), 1, bytes, 10), 2);
  EXPECT_EQ(IkDataFile::packBuffer(two.data(), 2, bytes, 11), -1);
  EXPECT_EQ(IkDataFile::packBuffer(two.data(), 2, bytes, 12), 4);
  const int dense[] = {1, 0};
  EXPECT_EQ(IkDataFile::packBuffer(dense, 2, bytes, 11), -1);
}

TEST(IkDataFile, RandomRowsAndTheirFrequenciesPackAlike) {
  std::mt19937 random(7);
  for (int round = 0; round < 20; ++round) {
    Row row;
    int chunk = -1;
    int spread = 1;
    for (int i = 0; i < 300; ++i) {
      if (random() % 20 == 0) spread = 1 << random() % 11;
      chunk += 1 + static_cast<int>(random() % static_cast<unsigned>(spread));
      const int frequency = 1 + static_cast<int>(random() % 8 ? random() % 3 : random() % 32767);
      row.push_back({chunk, frequency});
    }
    std::vector<int> dense(static_cast<std::size_t>(chunk) + 1);
    for (const IkDocumentInfo& p : row) dense[static_cast<std::size_t>(p.chunk)] = p.frequency;
    ASSERT_EQ(packed(dense), packed(row));
  }
}

TEST(IkDataFile, DeletedChunksMoveTheCountOn) {
  const std::unique_ptr<IkDeleterVector> deleter(
      IkDeleterVector::Create((testing::TempDir() + "odd").c_str(), 30, 0));
  for (int chunk = 1; chunk < 30; chunk += 2) deleter->deleteDocument(chunk);
  const Bytes bytes = packed(Row{{2, 1}, {3, 5}, {4, 2}, {21, 1}, {22, 3}});
  EXPECT_EQ(unpacked(bytes, deleter.get()), (Pairs{{2, 1}, {4, 2}, {22, 3}}));
  TenChunksAStructure map;
  EXPECT_EQ(unpacked(bytes, nullptr, &map), (Pairs{{0, 8}, {2, 4}}));
  EXPECT_EQ(unpacked(bytes, deleter.get(), &map), (Pairs{{0, 3}, {2, 3}}));
}

TEST(IkDataFile, BadSizeModesEndTheRow) {
  TenChunksAStructure map;
  for (const unsigned char mode : Bytes{0, 5, 255}) {
    TestLog log;
    EXPECT_EQ(unpacked({0x80, 1, 255, mode, 0x80, 1}), (Pairs{{1, 1}}));
    EXPECT_EQ(unpacked({0x80, 1, 0x80, 9, 255, mode}, nullptr, &map), (Pairs{{0, 1}}));
    EXPECT_EQ(log.lines(), (std::vector<std::string>(2, "0:Invalid size-mode while in datafile")));
  }
  TestLog log;
  EXPECT_EQ(unpacked({0x80, 1, 255}), (Pairs{{1, 1}}));  // the mode itself is missing
  EXPECT_EQ(log.lines().size(), 1u);
}

TEST(IkDataFile, RowsCutWithinAPairThrow) {
  const Bytes whole = packed(Row{{0x800000, 300}, {0x900000, 1}});
  for (std::size_t size = 3; size < whole.size(); ++size) {
    if (size == 8) continue;  // the end of the first pair
    const Bytes part(whole.begin(), whole.begin() + static_cast<long>(size));
    PairCollector collector;
    collector.pairs.reserve(2);
    EXPECT_NE(thrownBy([&] {
                IkDataFile::unpackBuffer(part.data(), static_cast<int>(size), 1.0f, &collector,
                                         nullptr, nullptr);
              }),
              "")
        << size;
  }
}

// Reads from an array of just that size, so that a sanitizer sees a step too far.
Pairs pairsOf(const Bytes& bytes, int mode, int documents = 0x7FFFFFFF) {
  const Bytes exact(bytes);
  IkUnpacker row;
  row.documents(documents);
  row.set(exact.data(), static_cast<int>(bytes.size()), mode);
  Pairs pairs;
  for (; row.more(); row.read()) pairs.emplace_back(row.docNum(), row.docFreq());
  row.read();
  EXPECT_FALSE(row.more());
  return pairs;
}

// Gaps around all limits of the size modes, frequencies around theirs.
TEST(IkUnpacker, ReadsWhatWasPackedAsFarAsItGoes) {
  const int gaps[] = {1, 0x7E, 0x7F, 0x7EFE, 0x7EFF, 0x7EFFFE, 0x7EFFFF};
  const int frequencies[] = {1, 1, 1, 2, 127, 128, 32767};
  std::mt19937 random(1);
  for (int round = 0; round < 40; ++round) {
    Pairs pairs;
    Row row;
    std::size_t kind = 0;
    for (int i = 0, doc = 0; i < 60; ++i) {
      if (i % 8 == 0) kind = random() % 7;
      doc += gaps[random() % 4 == 0 ? random() % 7 : kind];
      row.push_back({doc, frequencies[random() % 7]});
      pairs.emplace_back(doc, row.back().frequency);
    }
    Bytes bytes = packed(row);
    ASSERT_EQ(unpacked(bytes), pairs) << round;
    ASSERT_EQ(pairsOf(bytes, 2), pairs) << round;
    // A limit leaves the documents below it.
    EXPECT_EQ(pairsOf(bytes, 2, pairs[30].first), Pairs(pairs.begin(), pairs.begin() + 30));
    while (!bytes.empty()) {
      bytes.pop_back();
      const Pairs read = pairsOf(bytes, 2);
      ASSERT_LT(read.size(), pairs.size()) << round;
      ASSERT_TRUE(std::equal(read.begin(), read.end(), pairs.begin())) << round;
    }
  }
}

TEST(IkUnpacker, ReadsAnyBytes) {
  const struct {
    Bytes bytes;
    int mode;
    Pairs pairs;
  } cases[] = {
      {{0x80, 0x00}, 2, {{0, 1}}},
      {{0xFF, 1, 0xFE, 0x81}, 2, {{0x7E, 1}, {0x7F, 1}}},
      {{5, 0x81, 0x02, 0x83}, 1, {{5, 258}, {8, 1}}},
      {{0x80, 0x07, 0xFF, 5, 1, 1, 1, 1, 1, 1, 1, 1}, 2, {{7, 1}}},  // bad size modes
      {{0x80, 0x07, 0xFF, 0, 1, 1, 1, 1, 1, 1, 1, 1}, 2, {{7, 1}}},
      {{0x80, 0x00}, 7, {}},
      {{0xFF, 4, 0xFF, 0xFF, 0xFF, 0xFE, 0x81, 0, 0, 0}, 2, {{0x7FFFFFFE, 1}}},  // past the ints
      {{1, 0, 0, 0, 2, 0, 0, 0, 9, 0, 0, 0, 3, 0, 0, 0}, -1, {{1, 2}, {9, 3}}},
      {{1, 0, 0, 0, 2, 0, 0, 0, 9, 0, 0, 0}, -1, {{1, 2}}},
  };
  for (const auto& c : cases) EXPECT_EQ(pairsOf(c.bytes, c.mode), c.pairs) << &c - cases;
}

}  // namespace
}  // namespace vandrelle
