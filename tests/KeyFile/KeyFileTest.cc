#include "KeyFile.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "KeyFile/KfKeyFileManager.h"
#include "Storage/StorageTestSupport.h"

namespace vandrelle {
namespace {

struct Entry {
  std::string word;
  std::string data;
};

struct WordOrder {
  bool operator()(const std::string& a, const std::string& b) const {
    return WmWord::cmp(*WmLocalWord(a.c_str(), 1), *WmLocalWord(b.c_str(), 1)) < 0;
  }
};

// `chunkSize`, `type`, `dataSize` as for KdCreate.
void create(const std::string& root, int chunkSize, int type, int dataSize,
            const std::vector<Entry>& entries) {
  std::unique_ptr<KdFileCreator> creator(
      KfKeyFileManager::KdCreate(root.c_str(), chunkSize, type, dataSize));
  for (const Entry& entry : entries) {
    creator->Add_Entry(entry.word.c_str(), entry.data.data(), static_cast<int>(entry.data.size()));
  }
}

std::unique_ptr<KdFileAccessor> bound(const std::string& root, int accessType = 0) {
  return std::unique_ptr<KdFileAccessor>(KfKeyFileManager::KdBind(root.c_str(), accessType));
}

std::string text(const WmWord& word) {
  return std::string(word.letters(), static_cast<std::size_t>(word.num_letters()));
}

std::string lookedUp(KdFileAccessor& accessor, const std::string& word) {
  char data[256];
  int32 size = -1;
  if (!accessor.Lookup(WmLocalWord(word.c_str(), 1).word(), &size, data)) return "(none)";
  return std::string(data, static_cast<std::size_t>(size));
}

std::string worded(KdFileAccessor& accessor, int32 number) {
  WmLocalWord word;
  return accessor.Lookup(number, word.word()) ? text(*word) : "(none)";
}

// Every word that a stream gives, from its reset on.
std::vector<Entry> streamed(KdFileAccessor& accessor, const WmWord* start = nullptr) {
  std::vector<Entry> entries;
  std::unique_ptr<KdStream> stream(accessor.iterator());
  start == nullptr ? stream->reset() : stream->reset(start);
  for (; stream->more(); stream->next()) {
    EXPECT_EQ(stream->keySize(), stream->key()->num_letters() + 1);
    entries.push_back(
        {text(*stream->key()), std::string(static_cast<char*>(stream->data()),
                                           static_cast<std::size_t>(stream->dataSize()))});
  }
  return entries;
}

// A vocabulary with shared prefixes, long words and awkward letters, in order.
std::vector<std::string> vocabulary(int count, const std::string& letters) {
  std::mt19937 random(7);
  std::map<std::string, int, WordOrder> words;
  std::string word;
  while (static_cast<int>(words.size()) < count) {
    word.resize(random() % (word.size() + 1));
    const std::size_t more = random() % 30 == 0 ? 40 : 1 + random() % 6;
    for (std::size_t i = 0; i < more && word.size() < 63; ++i) {
      word += letters[random() % letters.size()];
    }
    words[word] = 1;
  }
  std::vector<std::string> sorted;
  for (const auto& [key, value] : words) sorted.push_back(key);
  return sorted;
}

TEST(KeyFile, BytesOfSmallFiles) {
  const std::string d5 = "DDDDD";
  const std::string long23(23, 'l');
  struct Case {
    const char* what;
    struct {
      int type, chunkSize, dataSize;
    } file;
    std::vector<Entry> entries;
    const char* key;
    const char* ptr;
  } cases[] = {
      {"aligned, constant",
       {9, 128, 1},
       {{"a", "1"}, {"ab", "2"}, {"abc", "3"}},
       "0031610232620333616263",
       "0000000900000080000000010000000b00000002000000000001610000000000000006000361626300000002"},
      {"mapped",
       {14, 512, 5},
       {{"a", d5}, {"ab", d5}, {"b", d5}, {"b", "EEEEE"}, {"abc", d5}},
       "004444444444610244444444446200444444444462",
       "0000000e000002000000000500000015000000020000000000000000000000000000000e0000000200000002"
       "01610162"},
      {"one word",
       {16, 512, 0},
       {{"word", ""}},
       "06776f7264",
       "000000100000020000000000000000050000000100000000000000000000000004776f7264"},
      {"no words", {14, 512, 5}, {}, "", "0000000e00000200000000050000000000000000"},
      // c = 2, a = 0, t = 19, s = 18: 00010 00000 10011 | 10010
      {"packed, constant",
       {8, 128, 2},
       {{"CAT", "xy"}, {"cats", "zz"}},
       "037879024c067a7a024c09",
       "0000000800000080000000020000000b000000020000000000036361740000000000000005000463617473"
       "00000001"},
      {"packed, varying",
       {7, 128, 9},
       {{"c", ""}, {"c'", "abc"}, {"d7", "z"}},
       "00000202036162631c01017aa303",
       nullptr},
      {"aligned, varying, a map of three bytes",
       {10, 128, 0},
       {{"lla", "q"}, {"llaz", ""}, {long23, "r"}},
       "0301716c6c6109007aff001701726c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c6c",
       nullptr},
      {"inline",
       {11, 128, 4},
       {{"a", "1234"}, {"ab", ""}, {"ac", "5678"}},
       "00e131323334026201e16335363738",
       nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    TestDirectory directory;
    const std::string root = directory / "k";
    create(root, c.file.chunkSize, c.file.type, c.file.dataSize, c.entries);
    EXPECT_EQ(hex(fileBytes(root + ".key")), c.key);
    if (c.ptr != nullptr) {
      EXPECT_EQ(hex(fileBytes(root + ".ptr")), c.ptr);
    }
    EXPECT_FALSE(std::filesystem::exists(root + ".wrd"));
  }
}

// Every kind, with chunks small enough that there are many.
TEST(KeyFile, EveryKindGivesBackWhatWentIn) {
  const std::string byteLetters = "abcdefgz19\xe9\xfe-' ";
  struct Case {
    int type, access, chunkSize, dataSize;
  } cases[] = {{7, 0, 150, 0},   {8, 16, 90, 3},  {9, 0, 80, 0},   {10, 0, 140, 0},
               {11, 0, 100, 4},  {14, 0, 128, 5}, {14, 16, 71, 5}, {16, 14, 90, 8},
               {16, 0, 512, 60}, {14, 0, 512, 5}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type * 1000 + c.chunkSize);
    TestDirectory directory;
    const std::string root = directory / "k";
    const bool packed = c.type == 7 || c.type == 8;
    const bool varying = c.type == 7 || c.type == 10;
    // The flag of an inline entry takes a bit of the first stored letter.
    const std::string letters = packed ? "abcyz-' " : c.type == 11 ? "abcz19" : byteLetters;
    std::vector<Entry> entries;
    for (const std::string& word : vocabulary(3000, letters)) {
      const std::size_t n = entries.size();
      const std::size_t bytes = varying ? (n % 40 == 0 ? std::min(65, c.chunkSize - 70) : n % 9)
                                : c.type == 11 ? 4 * (n % 3 == 0)
                                               : static_cast<std::size_t>(c.dataSize);
      entries.push_back({word, std::string(bytes, static_cast<char>('A' + n % 50))});
    }
    create(root, c.chunkSize, c.type, c.dataSize, entries);
    std::unique_ptr<KdFileAccessor> accessor = bound(root, c.access);
    ASSERT_EQ(accessor->Num_Entries(), 3000);
    std::vector<std::size_t> order(entries.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i * 1237 % order.size();
    for (std::size_t i : order) {
      const Entry& entry = entries[i];
      ASSERT_EQ(lookedUp(*accessor, entry.word), entry.data) << entry.word;
      ASSERT_EQ(worded(*accessor, static_cast<int32>(i)), entry.word);
      int32 number = -1;
      ASSERT_TRUE(accessor->Lookup(WmLocalWord(entry.word.c_str(), 1).word(), &number));
      ASSERT_EQ(number, static_cast<int32>(i));
      const std::string absent = entry.word.substr(0, 62) + "b";
      const bool present = std::binary_search(
          entries.begin(), entries.end(), Entry{absent, ""},
          [](const Entry& a, const Entry& b) { return WordOrder()(a.word, b.word); });
      ASSERT_EQ(lookedUp(*accessor, absent) != "(none)", present) << absent;
    }
    EXPECT_EQ(worded(*accessor, -1), "(none)");
    EXPECT_EQ(worded(*accessor, 3000), "(none)");
    EXPECT_EQ(lookedUp(*accessor, "!"), "(none)");
    EXPECT_EQ(lookedUp(*accessor, "\xff"), "(none)");
    if (c.type == 11) continue;
    std::vector<Entry> seen = streamed(*accessor);
    ASSERT_EQ(seen.size(), entries.size());
    for (std::size_t i = 0; i < seen.size(); ++i) {
      ASSERT_EQ(seen[i].word, entries[i].word);
      ASSERT_EQ(seen[i].data, entries[i].data);
    }
    for (std::size_t i : {0, 1, 1500, 2998, 2999}) {
      EXPECT_EQ(streamed(*accessor, WmLocalWord(entries[i].word.c_str(), 1).word()).size(),
                3000 - i);
    }
    const std::string behind = entries[700].word.substr(0, 62) + "\x01";
    EXPECT_EQ(streamed(*accessor, WmLocalWord(behind.c_str(), 1).word()).size(), 2299u);
  }
}

TEST(KeyFile, StreamsTellSharedLettersAndTheirOddResets) {
  TestDirectory directory;
  create(directory / "k", 128, 9, 1, {{"a", "1"}, {"ab", "2"}, {"b", "3"}, {"bad", "4"}});
  std::unique_ptr<KdFileAccessor> accessor = bound(directory / "k");
  std::unique_ptr<KdStream> stream(accessor->iterator());
  stream->reset();
  EXPECT_EQ(text(*stream->key()), "a");
  EXPECT_EQ(stream->next(), 1);
  EXPECT_EQ(stream->next(), -1);
  EXPECT_EQ(stream->next(), -1);  // the last chunk's word is stored whole
  EXPECT_TRUE(stream->more());
  EXPECT_EQ(stream->next(), 0);
  EXPECT_FALSE(stream->more());
  // Past the last word: nothing is skipped.
  EXPECT_EQ(streamed(*accessor, WmLocalWord("zz").word()).size(), 4u);
  EXPECT_EQ(streamed(*accessor, WmLocalWord("").word()).size(), 4u);
  EXPECT_EQ(streamed(*accessor, WmLocalWord("ac").word()).size(), 2u);
}

TEST(KeyFile, LimitsOfEntries) {
  TestDirectory directory;
  const std::string root = directory / "k";
  const std::string data65(65, 'd');
  {
    std::unique_ptr<KdFileCreator> creator(KfKeyFileManager::KdCreate(root.c_str(), 512, 10, 0));
    const auto add = [&](const std::string& word, const std::string& data) {
      return thrownBy(
          [&] { creator->Add_Entry(word.c_str(), data.data(), static_cast<int32>(data.size())); });
    };
    EXPECT_EQ(add("a", data65), "");
    EXPECT_EQ(add("b", data65 + "d"), "KdWordTooBig: Data too big.");
    EXPECT_EQ(add(std::string(64, 'b'), ""), "KdWordTooBig: Word too long.");
    EXPECT_EQ(add(std::string(63, 'b'), "x"), "");
    // Dropped, but its size must not disturb the last entry's.
    EXPECT_EQ(add("a", "four"), "");
  }
  std::unique_ptr<KdFileAccessor> accessor = bound(root);
  EXPECT_EQ(lookedUp(*accessor, "a"), data65);
  EXPECT_EQ(lookedUp(*accessor, std::string(63, 'b')), "x");
  int32 size = 77;
  EXPECT_TRUE(accessor->Lookup(WmLocalWord("a").word(), &size, nullptr));
  EXPECT_EQ(size, 77);  // unset for the first word of a chunk
}

// An entry that is refused is not counted: the caller may go on.
TEST(KeyFile, InlineDataOfAnotherSizeAreRefused) {
  TestDirectory directory;
  {
    std::unique_ptr<KdFileCreator> creator(
        KfKeyFileManager::KdCreate((directory / "k").c_str(), 128, 11, 4));
    for (const auto& [word, size] : {std::pair("a", 0), {"ab", 3}, {"b", 5}, {"ba", 4}, {"c", 0}}) {
      const std::string thrown = thrownBy([&] { creator->Add_Entry(word, "12345", size); });
      EXPECT_EQ(thrown.empty(), size % 4 == 0) << thrown;
    }
  }
  std::unique_ptr<KdFileAccessor> accessor = bound(directory / "k");
  EXPECT_EQ(accessor->Num_Entries(), 3);
  EXPECT_EQ(worded(*accessor, 1), "ba");
  EXPECT_EQ(lookedUp(*accessor, "ba"), "1234");
}

TEST(KeyFile, WordsThatDoNotFitAChunk) {
  const std::string tooLong =
      "KdInit: The size of the data plus word must be                        less than the chunk "
      "size";
  TestDirectory directory;
  const auto adding = [&](const std::string& first, const std::string& second) {
    return thrownBy([&] {
      std::unique_ptr<KdFileCreator> creator(
          KfKeyFileManager::KdCreate((directory / "k").c_str(), 30, 14, 5));
      creator->Add_Entry(first.c_str(), "12345", 5);
      creator->Add_Entry(second.c_str(), "12345", 5);
      creator.reset();
    });
  };
  EXPECT_EQ(adding(std::string(22, 'a'), "b"), "");
  EXPECT_EQ(adding(std::string(23, 'a'), "b"), tooLong);
  EXPECT_EQ(adding("aa", "b" + std::string(30, 'c')), tooLong);
  EXPECT_EQ(adding("ab", "a" + std::string(30, 'c')), tooLong);
}

// Everything that a caller does with a table, on files that are cut short or have
// a wrong bit: an answer or an exception, never an access out of bounds. Streams of
// inline files throw also where nothing is damaged.
std::string exercised(const std::string& root, bool streams) {
  std::unique_ptr<KdFileAccessor> accessor;
  std::unique_ptr<KdStream> stream;
  return thrownBy([&] {
    accessor = bound(root);
    if (accessor->Num_Entries() > 5000 || accessor->Data_Size() > 8) return;
    for (const char* word : {"a", "abc", "cab", "dab", "zz", "bbbb"}) lookedUp(*accessor, word);
    for (int32 number = 0; number < accessor->Num_Entries(); number += 7) {
      worded(*accessor, number);
    }
    if (!streams) return;
    stream.reset(accessor->iterator());
    for (stream->reset(); stream->more();) stream->next();
  });
}

TEST(KeyFile, DamagedFilesAreErrors) {
  for (int type : {7, 8, 9, 10, 11, 14, 16}) {
    SCOPED_TRACE(type);
    TestDirectory directory;
    const std::string root = directory / "k";
    std::vector<Entry> entries;
    for (const std::string& word : vocabulary(30, "abcd")) {
      entries.push_back({word, type == 11 && entries.size() % 3 != 0 ? "" : "1234"});
    }
    create(root, 90, type, 4, entries);
    EXPECT_EQ(exercised(root, type != 11), "");
    for (const char* suffix : {".key", ".ptr"}) {
      const std::string sound = fileBytes(root + suffix);
      for (std::size_t length = sound.size(); length-- > 0;) {
        std::filesystem::resize_file(root + suffix, length);
        EXPECT_NE(exercised(root, type != 11), "") << suffix << " cut to " << length;
      }
      for (std::size_t bit = 0; bit < 8 * sound.size(); bit += 1 + bit / 400) {
        writeFile(root + suffix, flipped(sound, bit / 8, 1 << bit % 8));
        const std::string thrown = exercised(root, true);
        EXPECT_EQ(std::set<std::string>({"", "IO", "KdAccess", "KdStream", "SysTools"})
                      .count(thrown.substr(0, thrown.find(':'))),
                  1u)
            << thrown;
      }
      // Behind a sound header of the pointer file, too.
      for (std::size_t kept : {0, 20}) {
        writeFile(root + suffix, sound.substr(0, kept) + noise(1 << 20));
        EXPECT_NE(exercised(root, true), "");
      }
      writeFile(root + suffix, sound);
    }
  }
}

TEST(KeyFile, ManagerRefuses) {
  TestDirectory directory;
  const std::string root = directory / "k", folder = directory / "f", plain = directory / "p";
  create(root, 128, 14, 1, {{"a", "1"}});
  create(plain, 128, 9, 1, {{"a", "1"}, {"ab", "2"}});
  const std::string sound = fileBytes(plain + ".ptr");
  std::filesystem::create_directory(folder + ".ptr");
  writeFile(folder + ".key", "");
  writeFile(directory / "6.ptr", std::string("\0\0\0\x6", 4));
  writeFile(directory / "6.key", "");
  const auto converting = [](const std::string& name) {
    return thrownBy([&] { KfKeyFileManager::ConvertPtrFileToMmap(name.c_str()); });
  };
  const struct {
    std::string thrown, expected;
  } cases[] = {
      {thrownBy([&] { create(root, 128, 6, 0, {}); }), "KdCreate: Invalid type passed to KdCreate"},
      {thrownBy([&] { create(root, 128, 17, 0, {}); }),
       "KdCreate: Invalid type passed to KdCreate"},
      {thrownBy([&] { bound(directory / "6"); }), "KdAccess: Unexpected field in pointer file."},
      {thrownBy([&] { bound(folder); }), "KdAccess: Unexpected field in pointer file."},
      {thrownBy([&] { bound(root, 15); }), "KdAccess: This parameter is only used for mem-maps15"},
      {converting(directory / "none"),
       "KdAccess: Pointer file doesn't exist; cannot convert to mmap version."},
      {converting(folder), "KdAccess: Error reading pointer file."},
      {converting(plain), ""},
  };
  for (const auto& c : cases) EXPECT_EQ(c.thrown, c.expected);
  EXPECT_EQ(fileBytes(plain + ".ptr.old"), sound);
  EXPECT_EQ(fileBytes(plain + ".ptr").substr(0, 20),
            std::string("\0\0\0\xe", 4) + sound.substr(4, 16));
  EXPECT_EQ(lookedUp(*bound(plain), "ab"), "2");
}

}  // namespace
}  // namespace vandrelle
