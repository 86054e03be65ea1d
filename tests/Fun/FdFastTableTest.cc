#include "Fun/FdFastTable.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Fun/FdFastWordTable.h"
#include "Fun/FdMultiAllocator.h"

namespace vandrelle {
namespace {

std::string word(const std::string& letters) { return static_cast<char>(letters.size()) + letters; }
const WmWord* asWord(const std::string& bytes) {
  return reinterpret_cast<const WmWord*>(bytes.data());
}

TEST(FdFastTable, FirstMatchInGroupOrderWins) {
  FdFastTable table(1);  // one bucket: all entries share a chain
  EXPECT_EQ(table.numBuckets(), 1);
  FdFastTableEntry data = 0;
  table.insert(5, 100);
  table.insert(5, 101);
  ASSERT_TRUE(table.find(5, &data));
  EXPECT_EQ(data, 100u);  // same group: the older entry
  for (FdFastTableEntry i = 0; i < 5; ++i) table.insert(50 + i, i);
  table.insert(5, 102);  // opens the next group, which goes to the head
  ASSERT_TRUE(table.find(5, &data));
  EXPECT_EQ(data, 102u);
  EXPECT_EQ(table.bucket(0)->count, 1);

  ASSERT_TRUE(table.remove(5, &data));  // its group goes
  EXPECT_EQ(data, 102u);
  EXPECT_EQ(table.bucket(0)->count, 7);
  ASSERT_TRUE(table.remove(5, nullptr));  // the group's last entry takes the place
  EXPECT_EQ(table.bucket(0)->entries[0].key, 54u);
  ASSERT_TRUE(table.remove(5, &data));
  EXPECT_EQ(data, 101u);
  EXPECT_FALSE(table.remove(5, &data));
  EXPECT_EQ(table.dataPointer(5), nullptr);
}

TEST(FdFastTable, KeepsManyKeys) {
  FdFastTable table(64);
  for (FdFastTableEntry i = 0; i < 5000; ++i) table.insert(i * 0x9e3779b9u, i);
  for (FdFastTableEntry i = 0; i < 5000; i += 3) {
    ASSERT_TRUE(table.remove(i * 0x9e3779b9u, nullptr));
  }
  for (FdFastTableEntry i = 0; i < 5000; ++i) {
    FdFastTableEntry data = 0;
    ASSERT_EQ(table.find(i * 0x9e3779b9u, &data), i % 3 != 0) << i;
    if (i % 3 != 0) {
      EXPECT_EQ(data, i);
    }
  }
}

TEST(FdFastWordTable, HashTakesFiveBitsOfEachLetter) {
  EXPECT_EQ(FdFastWordTable::hash(asWord(word(""))), 0u);
  EXPECT_EQ(FdFastWordTable::hash(asWord(word("aaaa"))), 0u);
  EXPECT_EQ(FdFastWordTable::hash(asWord(word("bcd"))), 1u | 2u << 5 | 3u << 10);
  // The seventh letter has two bits left; the eighth starts anew from shift 0.
  EXPECT_EQ(FdFastWordTable::hash(asWord(word("aaaaaaz"))), (25u << 30));
  EXPECT_EQ(FdFastWordTable::hash(asWord(word("baaaaaac"))), 3u);
  // The second restart is from 1, the third from 2.
  EXPECT_EQ(FdFastWordTable::hash(asWord(word("aaaaaaaaaaaaaab"))), 1u << 1);
  EXPECT_EQ(FdFastWordTable::hash(asWord(word("aaaaaaaaaaaaaaaaaaaaab"))), 1u << 2);
}

TEST(FdFastWordTable, HashOfAllLettersAtOnceIsTheHashByLetter) {
  std::mt19937 random(3);
  for (int length = 0; length <= 64; ++length) {
    for (int round = 0; round < 50; ++round) {
      std::string letters(static_cast<std::size_t>(length), ' ');
      for (char& letter : letters) letter = static_cast<char>(random());
      // An exact heap block, so that a byte read beyond the word is found out.
      const std::string bytes = word(letters);
      std::vector<char> exact(bytes.begin(), bytes.end());
      EXPECT_EQ(FdFastWordTable::hash(reinterpret_cast<const WmWord*>(exact.data())),
                FdFastWordTable::hashByLetter(
                    reinterpret_cast<const unsigned char*>(letters.data()), length));
    }
  }
}

TEST(FdFastWordTable, FindsWordsWhoseHashesMeet) {
  FdFastWordTable table(4);
  std::vector<std::string> words;
  std::string letters;
  for (int i = 0; i < 64; ++i) words.push_back(word(letters += 'a'));  // all of hash 0
  words.push_back(word("AAA"));                                        // and this one
  for (std::size_t i = 0; i < words.size(); ++i) table.insert(asWord(words[i]), i);
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::vector<char> asked(words[i].begin(), words[i].end());
    FdFastWordTable::Data data = 0;
    ASSERT_TRUE(table.find(reinterpret_cast<const WmWord*>(asked.data()), &data));
    EXPECT_EQ(data, i);
  }
  for (std::size_t i = 0; i < words.size(); i += 2) {
    FdFastWordTable::Data data = 0;
    ASSERT_TRUE(table.remove(asWord(words[i]), &data));
    EXPECT_EQ(data, i);
  }
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(table.find(asWord(words[i]), nullptr), i % 2 == 1);
  }
  table.removeAll();
  EXPECT_FALSE(table.find(asWord(words[1]), nullptr));
  table.insert(asWord(words[1]), 7);
  EXPECT_TRUE(table.find(asWord(words[1]), nullptr));
}

TEST(FdMultiAllocator, ServesEverySize) {
  FdMultiAllocator allocator(64);
  allocator.init(16, 2);
  struct Block {
    char* at;
    int size;
  };
  std::vector<Block> blocks;
  for (int size = 0; size <= 200; ++size) {
    char* at = static_cast<char*>(allocator.allocate(size));
    std::memset(at, size, static_cast<std::size_t>(size));
    blocks.push_back({at, size});
  }
  for (const Block& block : blocks) {
    for (int i = 0; i < block.size; ++i) {
      ASSERT_EQ(static_cast<unsigned char>(block.at[i]), block.size);
    }
    allocator.deallocate(block.at, block.size);
  }
  const std::int64_t bytes = allocator.totalBytes();
  void* again = allocator.allocate(60);
  EXPECT_EQ(allocator.totalBytes(), bytes);
  allocator.deallocate(again, 60);

  FdTemplateAllocator<std::uint64_t> numbers;
  std::uint64_t* number = numbers.allocate();
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(number) % alignof(std::uint64_t), 0u);
  numbers.deallocate(number);
}

}  // namespace
}  // namespace vandrelle
