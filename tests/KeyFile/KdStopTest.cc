#include <map>
#include <random>
#include <utility>
#include <vector>

#include "KeyFile/KfKeyFileManager.h"
#include "Storage/StorageTestSupport.h"

namespace vandrelle {
namespace {

// Keys and their data; "" for none.
using Entries = std::vector<std::pair<std::string, std::string>>;

void create(const std::string& root, int chunkSize, int type, const Entries& entries) {
  std::unique_ptr<KdFileCreator> creator(
      KfKeyFileManager::KdCreate(root.c_str(), chunkSize, type, 0));
  for (const auto& [key, data] : entries) {
    WmLocalWord word(data.c_str());
    creator->Add_Entry(key.c_str(), data.empty() ? nullptr : word.word(), 0);
  }
}

std::unique_ptr<KdFileAccessor> bound(const std::string& root) {
  return std::unique_ptr<KdFileAccessor>(KfKeyFileManager::KdBind(root.c_str()));
}

std::string text(const void* word) {
  std::ostringstream os;
  os << *static_cast<const WmWord*>(word);
  return os.str();
}

std::string lookedUp(KdFileAccessor& accessor, const std::string& key) {
  WmLocalWord data("before");
  int32 size = -1;
  if (!accessor.Lookup(WmLocalWord(key.c_str(), 1).word(), &size, data.word())) return "(none)";
  EXPECT_EQ(size, data->valid() ? data->num_bytes() : 0);
  return text(data.word());
}

Entries streamed(KdFileAccessor& accessor, const char* start = nullptr) {
  Entries entries;
  std::unique_ptr<KdStream> stream(accessor.iterator());
  start == nullptr ? stream->reset() : stream->reset(WmLocalWord(start).word());
  for (; stream->more(); stream->next()) {
    EXPECT_EQ(stream->keySize(), stream->key()->num_bytes());
    entries.emplace_back(text(stream->key()), stream->dataSize() != 0 ? text(stream->data()) : "");
  }
  return entries;
}

const std::string kNoLetters(2 * 22 * 2, '0');  // of e to z

TEST(KdStop, BytesOfASmallFile) {
  TestDirectory directory;
  const std::string root = directory / "k";
  const Entries entries = {
      {"a", ""}, {"abscond", "abs"}, {"be", "was"}, {"did", ""}, {"do", "did"}};
  create(root, 128, 12, entries);
  EXPECT_EQ(hex(fileBytes(root + ".key")),
            "00ff61"
            "16056273636f6e6473"
            "0103626577617300"
            "03ff64696400"
            "0104646f6964");
  EXPECT_EQ(hex(fileBytes(root + ".ptr")),
            "0000000c"
            "0001008000100004"
            "00000161"
            "0006026265"
            "000a03646964"
            "000d02646f"
            "0000000100020002" +
                kNoLetters);
  EXPECT_EQ(streamed(*bound(root)), entries);

  create(root, 200, 13, {{"zoo", ""}});
  EXPECT_EQ(hex(fileBytes(root + ".key")), "03ff7a6f6f00");
  EXPECT_EQ(hex(fileBytes(root + ".ptr")),
            "0000000d000100c800030001"
            "0000037a6f6f" +
                std::string(104, '0'));
  create(root, 128, 12, {});
  EXPECT_EQ(fileBytes(root + ".key"), "");
  EXPECT_EQ(hex(fileBytes(root + ".ptr")), "0000000c0001008000000000" + std::string(104, '0'));
  EXPECT_EQ(streamed(*bound(root)), Entries());
  EXPECT_EQ(lookedUp(*bound(root), "a"), "(none)");
}

TEST(KdStop, Limits) {
  const std::string a20(20, 'a'), b22(22, 'b');
  const std::string tooBig = "KdInit: Each entry must be smaller than the chunk size.";
  const struct {
    const char* what;
    int chunkSize;
    Entries entries;
    std::string thrown;
    int chunks;  // that are written
  } cases[] = {
      {"longest key", 128, {{"b" + a20, b22}}, "", 1},
      {"key too long", 128, {{"bb" + a20, ""}}, "KdWordTooBig: Key too long: bb" + a20, 0},
      {"data too big", 128, {{"b", b22 + "b"}}, "KdWordTooBig: Data too big: " + b22 + "b", 0},
      {"no letter", 128, {{"9a", ""}}, "KdInit: Key must begin with a letter: 9a", 0},
      {"an apostrophe", 128, {{"'tis", ""}}, "KdInit: Key must begin with a letter: 'tis", 0},
      {"empty key", 128, {{"", ""}}, "KdInit: Key must begin with a letter: ", 0},
      {"chunk exactly full", 8, {{"a", ""}, {"abcd", ""}, {"b", ""}}, "", 3},
      {"a byte less", 9, {{"a", ""}, {"abcd", ""}, {"b", ""}}, "", 2},
      {"smallest chunk", 3, {{"a", ""}, {"b", ""}}, "", 2},
      {"chunk too small", 2, {}, "KdInit: Chunk size must be bigger.", 0},
      {"chunk too large", 32768, {}, "KdInit: Chunk size must be at most 32767.", 0},
      {"first entry as large as a chunk", 9, {{"a", ""}, {"bcdefgh", ""}}, "", 2},
      {"first entry too large", 9, {{"a", ""}, {"bcdefghi", ""}}, tooBig, 0},
      {"entry too large", 9, {{"a", ""}, {"abcdefghi", ""}}, tooBig, 0},
      {"order", 128, {{"b", "x"}, {"b", "y"}, {"aa", ""}, {"c", ""}}, "", 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TestDirectory directory;
    const std::string root = directory / "k";
    EXPECT_EQ(thrownBy([&] { create(root, c.chunkSize, 12, c.entries); }), c.thrown);
    if (!c.thrown.empty()) continue;
    EXPECT_EQ(loadU16(fileBytes(root + ".ptr").data() + 10), c.chunks);
    EXPECT_EQ(lookedUp(*bound(root), c.entries[0].first), c.entries[0].second);
  }
  EXPECT_EQ(thrownBy([] { KfKeyFileManager::KdCreate(nullptr, 128, 12, 0); }),
            "IO: Need non-null name for key/pointer files.");
}

TEST(KdStop, OffsetsHaveTheirLimit) {
  TestDirectory directory;
  Entries entries;
  for (int i = 0; i < 9000; ++i) {
    // One entry of 20 bytes a chunk: 65,535 units are reached behind 6,553 of them.
    std::string number = std::to_string(10000 + i);
    for (char& digit : number) digit = static_cast<char>('a' + digit - '0');
    entries.emplace_back("m" + number + std::string(12, 'x'), "");
  }
  EXPECT_EQ(thrownBy([&] { create(directory / "k", 20, 12, entries); }),
            "IO: Key file would pass 131070 bytes.");
  entries.resize(6553);
  create(directory / "k", 20, 12, entries);
  EXPECT_EQ(streamed(*bound(directory / "k")), entries);
  EXPECT_EQ(lookedUp(*bound(directory / "k"), entries[4000].first), "");
}

TEST(KdStop, GivesBackWhatWentIn) {
  std::mt19937 random(5);
  std::map<std::string, std::string> made;
  const std::string letters = "aabbcdmmz'-";
  const auto randomWord = [&](std::size_t most) {
    std::string word(1, letters[random() % 9]);
    while (word.size() < most && random() % 6 != 0) word += letters[random() % letters.size()];
    return word;
  };
  while (made.size() < 1500) {
    const std::string key = randomWord(21);
    std::string data = random() % 3 == 0 ? "" : randomWord(22);
    if (random() % 3 == 0) data = key.substr(0, random() % (key.size() + 1));
    if (random() % 9 == 0) data = key + "b";
    made[key] = data;
  }
  const Entries entries(made.begin(), made.end());
  for (const auto& [type, chunkSize] :
       {std::pair{12, 46}, {13, 61}, {15, 61}, {12, 128}, {15, 4000}}) {
    SCOPED_TRACE(type * 10000 + chunkSize);
    TestDirectory directory;
    create(directory / "k", chunkSize, type, entries);
    const std::unique_ptr<KdFileAccessor> accessor = bound(directory / "k");
    EXPECT_EQ(accessor->ptrMap() != nullptr, type == 15);
    for (const auto& [key, data] : entries) {
      ASSERT_EQ(lookedUp(*accessor, key), data) << key;
      const std::string other = key + "y";
      ASSERT_EQ(lookedUp(*accessor, other), "(none)") << other;
      EXPECT_TRUE(accessor->Lookup(WmLocalWord(key.c_str()).word(), nullptr, nullptr));
    }
    EXPECT_EQ(streamed(*accessor), entries);
    for (std::size_t i : {std::size_t{0}, std::size_t{700}, entries.size() - 1}) {
      EXPECT_EQ(streamed(*accessor, entries[i].first.c_str()).size(), entries.size() - i);
    }
    EXPECT_EQ(streamed(*accessor, "zzzzzz").size(), 0u);
  }
}

// Words that no such file has, among them such as are longer than its keys.
TEST(KdStop, WhatIsNotThere) {
  TestDirectory directory;
  create(directory / "k", 128, 12, {{"c3po", ""}, {"can", ""}, {"cat", ""}, {"d", ""}});
  const std::unique_ptr<KdFileAccessor> accessor = bound(directory / "k");
  for (const std::string& word : {std::string("c3po"), std::string(22, 'c'), std::string(23, 'c'),
                                  std::string(63, 'c'), std::string(""), std::string("'c"),
                                  std::string("b"), std::string("cb"), std::string("e")}) {
    EXPECT_EQ(lookedUp(*accessor, word), "(none)") << word;
  }
  EXPECT_EQ(lookedUp(*accessor, "cat"), "");
}

TEST(KdStop, DamagedFilesAreErrors) {
  TestDirectory directory;
  const std::string root = directory / "k";
  const Entries entries = {{"a", ""},    {"an", "a"},    {"and", ""},    {"anyone", "any"},
                           {"be", "is"}, {"been", "is"}, {"before", ""}, {"zero", "null"}};
  const auto exercised = [&] {
    return thrownBy([&] {
      const std::unique_ptr<KdFileAccessor> accessor = bound(root);
      for (const char* word : {"a", "an", "anyone", "been", "before", "zero", "bee", "zz"}) {
        lookedUp(*accessor, word);
      }
      EXPECT_LE(streamed(*accessor).size(), 40u);
    });
  };
  for (int run = 0; run < 4; ++run) {
    create(root, 24, run < 2 ? 12 : 15, entries);
    EXPECT_EQ(exercised(), "");
    const char* suffix = run % 2 == 0 ? ".key" : ".ptr";
    const std::string sound = fileBytes(root + suffix);
    for (std::size_t length = 0; length < sound.size(); ++length) {
      writeFile(root + suffix, sound.substr(0, length));
      EXPECT_NE(exercised(), "") << suffix << " cut to " << length;
    }
    for (std::size_t at = 0; at < sound.size(); ++at) {
      for (int flip : {0x01, 0x02, 0x10, 0x80, 0xff}) {
        writeFile(root + suffix, flipped(sound, at, flip));
        exercised();
      }
    }
  }
}

}  // namespace
}  // namespace vandrelle
