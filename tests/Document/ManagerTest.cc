#include <map>
#include <vector>

#include "Document/DcDataType.h"
#include "Document/DcDocumentUtil.h"
#include "Document/DcFileHeaderDocument.h"
#include "Document/DcManagerManager.h"
#include "Document/DcMetaDocManager.h"
#include "DocumentFixture.h"
#include "ThrownBy.h"
#include "Token.h"

namespace vandrelle {
namespace {

// Two files of one document (0 and 3) around one of three articles (1, 2 ...).
class ManagerTest : public DocumentFixture {
 protected:
  ManagerTest() : stemmer_(TkManager::NullStemmer()) {
    const std::string first = write("first.txt", "alpha beta");
    const std::string articles = write("articles", "one two--three--four five");
    const std::string last = write("last.txt", "omega");
    root_ = path("ix");
    writeIntegers("ix.idx", {1, 0, 0, 4, 0, 1, 4, 1, 1, 4, 2, 1, 1, 1, 2, 0, 0,
                             0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    writeIntegers("ix_one.idx", {10, -1, 5, -1});
    writeIntegers("ix_mlt.idx", {0, 7, 0, 9, 5, 0, 16, 9, 5});
    const std::string mark = "\xff\xff";
    write("ix.lst", mark + first + ' ' + mark + articles + ' ' + mark + last + ' ' +
                        std::string("\0\0\x04\xd2", 4));
    const int second = static_cast<int>(first.size()) + 3;
    writeIntegers("ix.lpt", {0, 0, second, 1, second + static_cast<int>(articles.size()) + 3, 4});
  }

  std::unique_ptr<DcMetaDocManager> bind() {
    return std::make_unique<DcMetaDocManager>(root_.c_str(), stemmer_.get(), nullptr, nullptr);
  }

  std::unique_ptr<TkStemmer> stemmer_;
  std::string root_;
};

TEST_F(ManagerTest, ServesDocumentsOfAllForms) {
  const auto manager = bind();
  ASSERT_EQ(manager->numDocuments(), 5);
  EXPECT_EQ(manager->corpusSize(), 1234);
  struct {
    std::string name, text;
    int size, headSize;
  } expected[] = {
      {path("first.txt"), "alpha beta ", 10, 0},    {path("articles") + ":doc0", "one two ", 7, 0},
      {path("articles") + ":doc1", "three ", 5, 0}, {path("articles") + ":doc2", "five ", 9, 5},
      {path("last.txt"), "omega ", 5, 0},
  };
  for (const int number : {0, 1, 2, 3, 4, 2, 0}) {
    const std::unique_ptr<DcDocument> document(manager->documentNum(number));
    auto* header = DESCRIPTOR_CAST(DcFileHeaderDocument, document.get());
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->documentNum(), number);
    EXPECT_EQ(taken(header->documentName()), expected[number].name);
    EXPECT_EQ(header->numCharacters(), expected[number].size);
    EXPECT_EQ(header->HeadSize(), expected[number].headSize);
    EXPECT_EQ(wordsOf(header), expected[number].text);
  }
  EXPECT_EQ(manager->documentNum(5), nullptr);
  EXPECT_EQ(manager->documentNum(-1), nullptr);
}

TEST_F(ManagerTest, NamesLeadBackToNumbers) {
  const auto manager = bind();
  const std::string articles = path("articles");
  const std::map<std::string, int> expected = {
      {path("first.txt"), 0},  {articles, 1},
      {articles + ":doc2", 3}, {articles + ":doc5", -1},
      {articles + ":xyz1", 2}, {articles + ":abs17", 17},
      {path("none"), -1},      {"a:b", -1},
  };
  for (const auto& [name, number] : expected)
    EXPECT_EQ(manager->nameToNum(name.c_str()), number) << name;
  const std::unique_ptr<DcDocument> document(manager->documentName((articles + ":doc1").c_str()));
  EXPECT_EQ(document->documentNum(), 2);
  manager->absname(1);
  EXPECT_EQ(taken(manager->numToName(2)), articles + ":abs2");
}

TEST_F(ManagerTest, TwentyLiveDocumentsOfOneForm) {
  const auto manager = bind();
  std::vector<std::unique_ptr<DcDocument>> live;
  for (int i = 0; i < 20; ++i) live.emplace_back(manager->documentNum(i % 2 == 0 ? 0 : 4));
  EXPECT_EQ(thrownBy([&] { delete manager->documentNum(0); }),
            "FileMgr: Too many streams open - delete your documents");
  live.pop_back();
  EXPECT_EQ(thrownBy([&] { live.emplace_back(manager->documentNum(0)); }), "");
  // Articles of one file share a stream, so there is no such limit.
  for (int i = 0; i < 60; ++i) live.emplace_back(manager->documentNum(1 + i % 3));
  EXPECT_EQ(wordsOf(live.back().get()), "five ");
}

// A type that nobody serves costs its document, and one of a feed also the next article of
// the file, read with the same helpers; other damage leaves a document, if an empty one.
TEST_F(ManagerTest, DamagedRowsDoNoHarm) {
  for (const std::string name : {"ix.idx", "ix_one.idx", "ix_mlt.idx"}) {
    const std::string sound = fileBytes(path(name));
    for (const int value : {-1, 0, 64, 2047, 2048, 32768, 40000, 0x7fffffff, -0x7fffffff}) {
      for (std::size_t place = 0; place < 24; place += 4) {
        std::string damaged = sound;
        damaged.resize(std::max(sound.size(), place + 4));
        storeS32(&damaged[place], value);
        write(name, damaged);
        const auto manager = bind();
        for (int number = 0; number < 3; ++number) {
          const std::unique_ptr<DcDocument> document(manager->documentNum(number));
          const bool next = place == 12 && number == 2 && value < DcDataType::kFirstUserForm;
          const bool unserved = name == "ix.idx" && value != DcDataType::kFirstUser &&
                                (place == static_cast<std::size_t>(number * 12) || next);
          EXPECT_EQ(document == nullptr, unserved) << name << place << ' ' << value;
          if (document == nullptr) continue;
          taken(document->documentName());
          // A size of 2 GiB would be walked byte by byte.
          if (DESCRIPTOR_CAST(DcAsciiDocument, document.get())->numCharacters() < 1000) {
            wordsOf(document.get());
          }
        }
      }
    }
    write(name, sound);
  }
}

// A manager of `count` documents that tells which number it was asked for.
class CountingManager : public DcDocumentManager {
 public:
  explicit CountingManager(int count) : count_(count) {}
  DcDocument* documentNum(int num) override {
    asked_ = num;
    return nullptr;
  }
  int numDocuments() override { return count_; }
  char* numToName(int num) override { return DcDocumentUtil::intToStr(num); }

  int count_;
  int asked_ = -1;
};

TEST(DcManagerManager, FindsTheManagerOfEachNumber) {
  for (const int managers : {1, 2, 3, 64, 65, 130}) {
    std::vector<std::unique_ptr<CountingManager>> parts;
    DcManagerManager joined;
    std::vector<std::pair<int, int>> places;
    for (int i = 0; i < managers; ++i) {
      parts.push_back(std::make_unique<CountingManager>(i % 4));
      const int used = i % 5 == 4 ? 1 : 0;
      joined.AddManager(parts.back().get(), used);
      const int taken = i % 4 == 0 ? 0 : used == 0 ? i % 4 : 1;
      for (int k = 0; k < taken; ++k) places.emplace_back(i, k);
    }
    const int total = static_cast<int>(places.size());
    ASSERT_EQ(joined.numDocuments(), total);
    const auto check = [&](int number) {
      const auto [manager, local] = places[static_cast<std::size_t>(number)];
      joined.documentNum(number);
      EXPECT_EQ(parts[static_cast<std::size_t>(manager)]->asked_, local) << number;
      EXPECT_EQ(taken(joined.numToName(number)), std::to_string(local));
    };
    for (int number = 0; number < total; ++number) check(number);
    for (int number = total - 1; number >= 0; --number) check(number);
    EXPECT_EQ(joined.documentNum(total), nullptr);
    EXPECT_EQ(joined.documentNum(-1), nullptr);
  }
}

}  // namespace
}  // namespace vandrelle
