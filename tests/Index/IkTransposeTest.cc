// Digests: the insertion rule, the file's bytes, the cache, likeness.

#include "Index/IkTranspose.h"

#include <cmath>
#include <random>

#include "IkTestTools.h"
#include "Index/IkDigestBuilder.h"
#include "Index/IkTransposeCache.h"
#include "Index/IkTransposeLoader.h"

namespace vandrelle {
namespace {

// A loader that keeps its digests in memory and counts what is asked of it.
class MemoryLoader : public IkTransposeLoader {
 public:
  MemoryLoader(int docs, int digestSize)
      : lineBytes(static_cast<std::size_t>(digestSize) * 6),
        bytes(lineBytes * static_cast<std::size_t>(docs)) {}
  int load(int doc, unsigned char* place) override {
    std::copy_n(&bytes[lineBytes * static_cast<std::size_t>(doc)], lineBytes, place);
    ++loads;
    return 1;
  }
  int flush(const unsigned char* data, int doc) override {
    std::copy_n(data, lineBytes, &bytes[lineBytes * static_cast<std::size_t>(doc)]);
    ++flushes;
    return 1;
  }
  std::size_t lineBytes;
  std::vector<unsigned char> bytes;
  int loads = 0;
  int flushes = 0;
};

TEST(IkDigestBuilder, AgreesWithTheScanningRule) {
  std::mt19937 random(7);
  for (int digestSize : {1, 2, 5, 32}) {
    IkDigestBuilder builder(3, digestSize);
    IkTranspose scanned(3, digestSize);
    scanned.externalCache(new MemoryLoader(3, digestSize), 3);
    for (int word = 0; word < 2000; ++word) {
      const int doc = static_cast<int>(random() % 3);
      // Few distinct values, so that equal minima are common.
      const std::uint16_t value = static_cast<std::uint16_t>(random() % (word < 1000 ? 9 : 60000));
      builder.insert(doc, word, value);
      scanned.insert(doc, word, value);
    }
    for (int doc = 0; doc < 3; ++doc) {
      std::vector<unsigned char> stored(static_cast<std::size_t>(digestSize) * 6);
      builder.store(doc, stored.data());
      scanned.sortByWord(doc);
      for (int i = 0; i < digestSize; ++i) {
        EXPECT_EQ(IkTranspose::rawNum(&stored[static_cast<std::size_t>(i) * 6]),
                  scanned.wordNum(doc, i));
        EXPECT_EQ(IkTranspose::rawValue(&stored[static_cast<std::size_t>(i) * 6]),
                  scanned.wordValue(doc, i));
      }
    }
  }
}

TEST(IkTranspose, ImportantWordsComeByValueAndLikenessIsLinear) {
  IkTranspose digests(3, 4);
  digests.externalCache(new MemoryLoader(3, 4), 3);
  for (const auto& [word, value] : {std::pair{7, 30000}, {2, 40000}, {9, 10000}}) {
    digests.insert(0, word, static_cast<std::uint16_t>(value));
    digests.insert(1, word + 100, static_cast<std::uint16_t>(value));
  }
  digests.insert(2, 2, 65535);
  for (int doc = 0; doc < 3; ++doc) digests.sortByWord(doc);

  char place[64];
  IkTransposeWords* words = digests.importantWords(0, 2, place);
  ASSERT_EQ(words->numWords(), 2);
  EXPECT_EQ(words->word_num(0), 2);
  EXPECT_EQ(words->word_num(1), 7);
  words = digests.allWords(0, place);
  EXPECT_EQ(words->numWords(), 4);
  EXPECT_EQ(words->word_num(2), 9);
  EXPECT_EQ(words->word_score(3), 0.0f);

  EXPECT_EQ(digests.dotProduct(0, 1), 0.0f);
  const double cosine = 40000.0 / 65535.0;
  EXPECT_NEAR(digests.dotProduct(0, 2), 1 - 2 * std::acos(cosine) / M_PI, 1e-6);
  EXPECT_NEAR(digests.dotProduct(2, 2), 1.0, 1e-6);
}

TEST(IkTransposeCache, EvictsCleanlyAndRespectsLocks) {
  MemoryLoader loader(5, 1);
  {
    IkTransposeCache cache(2, 1, &loader);
    IkTranspose::rawValue(cache.entry(0, 0), 11);
    cache.dirty(0);
    cache.entry(1, 0);
    cache.entry(0, 0);
    EXPECT_EQ(loader.loads, 2);
    for (int doc : {2, 3, 4}) cache.entry(doc, 0);
    EXPECT_EQ(loader.flushes, 1);
    EXPECT_EQ(IkTranspose::rawValue(cache.entry(0, 0)), 11);

    cache.locked(0, 1);
    cache.entry(1, 1);
    EXPECT_EQ(thrownBy([&] { cache.entry(2, 0); }), "Ik: Couldn't find an unlocked line");
  }
}

TEST(IkTransposeLoader, OldLayoutReadsAsTheSameWords) {
  const std::string name = testing::TempDir() + "old.trp";
  const std::string entry1("\x01\x02\x03\xAB\xCD", 5);
  const std::string entry2("\0\0\x09\x00\x01", 5);
  writeBytes(name, std::string(10, '\0') + entry2 + entry1);
  IkOldTransposeLoader loader(name.c_str(), 2);
  unsigned char place[12];
  loader.load(1, place);
  EXPECT_EQ(IkTranspose::rawNum(place), 9);
  EXPECT_EQ(IkTranspose::rawValue(place), 1);
  EXPECT_EQ(IkTranspose::rawNum(place + 6), 0x010203);
  EXPECT_EQ(IkTranspose::rawValue(place + 6), 0xABCD);
}

}  // namespace
}  // namespace vandrelle
