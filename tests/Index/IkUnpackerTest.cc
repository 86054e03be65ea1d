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
  Pairs pairs;
  for (row.set(exact.get(), static_cast<int>(bytes.size()), mode); row.more(); row.read()) {
    pairs.emplace_back(row.docNum(), row.docFreq());
  }
  row.read();
  EXPECT_FALSE(row.more());
  return pairs;
}

// Gaps around all limits of the size modes, frequencies around theirs.
Pairs randomPairs(unsigned seed) {
  std::mt19937 random(seed);
  const int gaps[] = {1, 0x7E, 0x7F, 0x7EFE, 0x7EFF, 0x7EFFFE, 0x7EFFFF};
  const int frequencies[] = {1, 1, 1, 2, 127, 128, 32767};
  Pairs pairs;
  int doc = 0;
  std::size_t kind = 0;
  for (int i = 0; i < 60; ++i) {
    if (i % 8 == 0) kind = random() % 7;
    doc += random() % 4 == 0 ? gaps[random() % 7] : gaps[kind];
    pairs.emplace_back(doc, frequencies[random() % 7]);
  }
  return pairs;
}

std::vector<unsigned char> packed(const Pairs& pairs) {
  std::vector<IkDocumentInfo> row;
  for (const auto& [doc, freq] : pairs) row.push_back({doc, freq});
  std::vector<unsigned char> bytes(row.size() * 10 + 20);
  const int used = IkDataFile::packBuffer(row.data(), static_cast<int>(row.size()), bytes.data(),
                                          static_cast<int>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(used));
  return bytes;
}

TEST(IkUnpacker, ReadsWhatWasPackedAsFarAsItGoes) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    const Pairs pairs = randomPairs(seed);
    std::vector<unsigned char> bytes = packed(pairs);
    ASSERT_EQ(pairsOf(bytes, IkUnpacker::kRowMode), pairs) << seed;
    // A limit leaves the documents below it.
    const int limit = pairs[30].first;
    EXPECT_EQ(pairsOf(bytes, IkUnpacker::kRowMode, limit),
              Pairs(pairs.begin(), pairs.begin() + 30));
    while (!bytes.empty()) {
      bytes.pop_back();
      const Pairs read = pairsOf(bytes, IkUnpacker::kRowMode);
      ASSERT_LT(read.size(), pairs.size()) << seed;
      ASSERT_TRUE(std::equal(read.begin(), read.end(), pairs.begin())) << seed;
    }
  }
}

TEST(IkUnpacker, ReadsAnyBytes) {
  const struct {
    std::vector<unsigned char> bytes;
    int mode;
    Pairs pairs;
  } cases[] = {
      {{}, 2, {}},
      {{0x80, 0x00}, 2, {{0, 1}}},
      {{0xFF, 1, 0xFE, 0x81}, 2, {{0x7E, 1}, {0x7F, 1}}},
      {{5, 0x81, 0x02, 0x83}, 1, {{5, 258}, {8, 1}}},
      {{0x80, 0x07, 0xFF, 5, 1, 1, 1, 1, 1, 1, 1, 1}, 2, {{7, 1}}},  // a bad size mode
      {{0x80, 0x07, 0xFF, 0, 1, 1, 1, 1, 1, 1, 1, 1}, 2, {{7, 1}}},
      {{0x80, 0x00}, 7, {}},
      // Twice round the numbers: the second gap leaves the ints.
      {{0xFF, 4, 0xFF, 0xFF, 0xFF, 0xFE, 0x81, 0, 0, 0}, 2, {{0x7FFFFFFE, 1}}},
      {{1, 0, 0, 0, 2, 0, 0, 0, 9, 0, 0, 0, 3, 0, 0, 0}, -1, {{1, 2}, {9, 3}}},
      {{1, 0, 0, 0, 2, 0, 0, 0, 9, 0, 0, 0}, -1, {{1, 2}}},
  };
  for (const auto& c : cases) EXPECT_EQ(pairsOf(c.bytes, c.mode), c.pairs) << &c - cases;
  std::mt19937 random(3);
  for (int i = 0; i < 2000; ++i) {
    std::vector<unsigned char> bytes(random() % 40);
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random() % 3 == 0 ? 255 : random());
    for (int mode : {-1, 1, 2, 3, 4}) {
      for (const auto& pair : pairsOf(bytes, mode, 1000)) {
        EXPECT_LT(static_cast<unsigned>(pair.first), 1000u);
      }
    }
  }
}

TEST(IkUnpacker, GoesBackToAState) {
  const Pairs pairs = randomPairs(1);
  const std::vector<unsigned char> bytes = packed(pairs);
  IkUnpacker row(bytes.data(), static_cast<int>(bytes.size()));
  for (int i = 0; i < 20; ++i) row.read();
  const IkUnpackerState place = row.state();
  while (row.more()) row.read();
  row.state(place);
  EXPECT_EQ(row.docNum(), pairs[20].first);
  row.read();
  EXPECT_EQ(row.docNum(), pairs[21].first);
  row.reset();
  EXPECT_EQ(row.docNum(), pairs[0].first);
}

}  // namespace
}  // namespace vandrelle
