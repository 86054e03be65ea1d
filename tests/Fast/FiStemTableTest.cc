// The unstemming table: layout, first fit, chains, damage.

#include "Fast/FiStemTable.h"

#include <map>
#include <random>
#include <vector>

#include "SmallDevice.h"
#include "Storage/StorageTestSupport.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {
namespace {

std::vector<std::string> found(FiStemTable* table, const char* stem) {
  FdVector<WmMagicWord> words;
  table->find(*WmLocalWord(stem).word(), words);
  std::vector<std::string> texts;
  for (int i = 0; i < words.numElements(); ++i) {
    texts.emplace_back((*words[i])->letters(),
                       static_cast<std::size_t>((*words[i])->num_letters()));
  }
  return texts;
}

// The rule in its plain form, every chain walked for every word: a map from
// block number to bytes, as they would stand in the file.
class PlainTable {
 public:
  PlainTable(int buckets, int blocksize) : buckets_(buckets), size_(blocksize), next_(buckets) {}

  void insert(const std::string& stem, const std::string& word) {
    const std::size_t bytes = stem.size() + word.size() + 2;
    int number =
        FiStemTable::bucket(FiStemTable::hash(*WmLocalWord(stem.c_str()).word()), buckets_, 0);
    for (;;) {
      std::string& block = blocks_[number];
      if (block.empty()) block = std::string("\x08\0\0\0\xFF\xFF\xFF\xFF", 8);
      if (block.size() + bytes < static_cast<std::size_t>(size_)) {
        block += static_cast<char>(stem.size()) + stem + static_cast<char>(word.size()) + word;
        storeLittleU32(block.data(), static_cast<uint32>(block.size()));
        return;
      }
      const int linked = static_cast<int>(loadLittleU32(block.data() + 4));
      if (linked >= 0) {
        number = linked;
      } else {
        storeLittleU32(block.data() + 4, static_cast<uint32>(next_));
        number = next_++;
      }
    }
  }

  std::string file() const {
    std::string all(128, '\0');
    storeLittleU32(all.data(), static_cast<uint32>(buckets_));
    storeLittleU32(all.data() + 4, static_cast<uint32>(size_));
    for (const auto& [number, block] : blocks_) {
      all.resize(128 + static_cast<std::size_t>(number) * static_cast<std::size_t>(size_));
      all += block;
      all.resize(128 + static_cast<std::size_t>(number + 1) * static_cast<std::size_t>(size_));
    }
    return all;
  }

 private:
  int buckets_;
  int size_;
  int next_;
  std::map<int, std::string> blocks_;
};

class FiStemTableTest : public DirectoryTest {
 protected:
  const std::string name = directory_ / "t";
};

TEST_F(FiStemTableTest, BytesAreThoseOfThePlainRule) {
  {
    FiStemTable empty;
    empty.bind(name.c_str(), 1, 0);
  }
  EXPECT_EQ(fileBytes(name), PlainTable(128, 512).file());
  PlainTable plain(7, 512);
  std::map<std::string, std::vector<std::string>> expected;
  {
    FiStemTable table;
    table.buckets(7);
    table.bind(name.c_str(), 1, 0);
    std::mt19937 random(3);
    for (int i = 0; i < 3000; ++i) {
      const std::string stem = "s" + std::to_string(random() % 400);
      const std::string word = stem + std::string(random() % 50, 'x');
      table.insert(*WmLocalWord(stem.c_str()).word(), *WmLocalWord(word.c_str()).word(), -1);
      plain.insert(stem, word);
      expected[stem].push_back(word);
    }
  }
  EXPECT_EQ(fileBytes(name), plain.file());
  for (int map : {0, 1}) {
    FiStemTable table;
    table.bind(name.c_str(), 0, map);
    for (const auto& [stem, words] : expected) {
      std::vector<std::string> sorted = words;
      std::vector<std::string> answer = found(&table, stem.c_str());
      std::sort(sorted.begin(), sorted.end());
      std::sort(answer.begin(), answer.end());
      EXPECT_EQ(answer, sorted) << stem;
    }
    EXPECT_TRUE(found(&table, "nowhere").empty());
  }
}

TEST_F(FiStemTableTest, AFullDeviceIsToldByFlush) {
  FiStemTable table;
  table.bind(name.c_str(), 1, 0);
  for (const char* word : {"run", "walk", "stand"}) {
    table.insert(*WmLocalWord(word).word(), *WmLocalWord(word).word(), -1);
  }
  const SmallDevice device(128);
  EXPECT_EQ(thrownBy([&] { table.flush(); }), "Fatal: Can't write: File too large");
}

TEST_F(FiStemTableTest, DamagedFilesNeverHarm) {
  {
    FiStemTable table;
    table.buckets(2);
    table.blocksize(64);
    table.bind(name.c_str(), 1, 0);
    for (const char* word : {"run", "runs", "running", "runner", "walk", "walks"}) {
      table.insert(*WmLocalWord(word[0] == 'r' ? "run" : "walk").word(), *WmLocalWord(word).word(),
                   -1);
    }
  }
  const std::string whole = fileBytes(name);
  const std::string bad = name + ".bad";
  auto probe = [&](const std::string& bytes) {
    writeFile(bad, bytes);
    for (int map : {0, 1}) {
      FiStemTable table;
      std::vector<std::string> words;
      const std::string thrown = thrownBy([&] {
        table.bind(bad.c_str(), 0, map);
        for (const char* stem : {"run", "walk"}) {
          const std::vector<std::string> more = found(&table, stem);
          words.insert(words.end(), more.begin(), more.end());
        }
      });
      // Nothing can't be mapped.
      const char* family = map != 0 && bytes.empty() ? "SysTools: " : "Fatal: ";
      EXPECT_TRUE(thrown.empty() || thrown.starts_with(family)) << thrown;
      for (const std::string& word : words) EXPECT_NE(bytes.find(word), std::string::npos) << word;
    }
  };
  for (std::size_t length = 0; length < whole.size(); length += 3) probe(whole.substr(0, length));
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const int flip : {0x01, 0x80, 0xFF}) probe(flipped(whole, i, flip));
  }
}

}  // namespace
}  // namespace vandrelle
