#include "Index/IkUnpacker.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "Index/IkDataFile.h"

namespace vandrelle {
namespace {

using Pairs = std::vector<std::pair<int, int>>;

// Reads from an array of just that size, so that a sanitizer sees a step too far.
Pairs pairsOf(const std::vector<unsigned char>& bytes, int mode, int documents = 0x7FFFFFFF) {
  const auto exact = std::make_unique<unsigned char[]>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), exact.get());
  IkUnpacker row;
  row.documents(documents);
  row.set(exact.get(), static_cast<int>(bytes.size()), mode);
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
    std::vector<IkDocumentInfo> row;
    std::size_t kind = 0;
    for (int i = 0, doc = 0; i < 60; ++i) {
      if (i % 8 == 0) kind = random() % 7;
      doc += gaps[random() % 4 == 0 ? random() % 7 : kind];
      row.push_back({doc, frequencies[random() % 7]});
      pairs.emplace_back(doc, row.back().frequency);
    }
    std::vector<unsigned char> bytes(1000);
    const int used = IkDataFile::packBuffer(row.data(), 60, bytes.data(), 1000);
    bytes.resize(static_cast<std::size_t>(used));
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
    std::vector<unsigned char> bytes;
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
