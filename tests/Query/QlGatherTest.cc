// Vectors, groups and the three ways to make them, on digests written down here.

#include "Query/QlGather.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Index/IkIndexBinder.h"
#include "Index/IkTranspose.h"
#include "Index/IkTransposeLoader.h"
#include "Index/IkWordTable.h"
#include "Query/QlGatherIterated.h"
#include "Query/QlGatherResult.h"
#include "Word.h"

namespace vandrelle {
namespace {

using Words = std::vector<std::pair<int, double>>;  // word and weight, by word
using Groups = std::vector<std::vector<int>>;

constexpr int kDigestSize = 4;

// An index of digests alone. Word n is called "wn".
class Digests : public IkIndexBinder {
 public:
  explicit Digests(std::vector<Words> docs)
      : transpose_(static_cast<int>(docs.size()), kDigestSize) {
    transpose_.externalCache(new Loader(std::move(docs)), 3);
  }
  IkRetriever* retriever() override { return nullptr; }
  IkTranspose* transpose() override { return &transpose_; }
  IkWordTable* wordTable() override { return &words_; }
  IkIndexInfo* info() override { return nullptr; }

 private:
  struct Loader : IkTransposeLoader {
    explicit Loader(std::vector<Words> docs) : docs_(std::move(docs)) {}
    int load(int doc, unsigned char* place) override {
      const Words& words = docs_[static_cast<std::size_t>(doc)];
      std::fill_n(place, kDigestSize * 6, static_cast<unsigned char>(0));
      place += (kDigestSize - static_cast<int>(words.size())) * 6;
      for (const auto& [word, weight] : words) {
        IkTranspose::rawNum(place, word);
        IkTranspose::rawValue(place, static_cast<std::uint16_t>(weight * 65535));
        place += 6;
      }
      return 1;
    }
    int flush(const unsigned char*, int) override { return 1; }
    std::vector<Words> docs_;
  };
  struct Table : IkWordTable {
    int lookup(const WmWord*, StStoragePos&) override { return 0; }
    int wordNum(const WmWord*) override { return -1; }
    const WmWord* word(int num) override {
      name_ = WmLocalWord(("w" + std::to_string(num)).c_str());
      return name_.word();
    }
    WmLocalWord name_;
  };
  IkTranspose transpose_;
  Table words_;
};

std::string textOf(const QlGatherVector& vector) {
  std::ostringstream text;
  for (int i = 0; i < vector.numEntries(); ++i) {
    if (vector.score(i) != 0) text << vector.word(i) << ':' << vector.score(i) << ' ';
  }
  return text.str();
}

void fill(QlGatherVector* vector, const Words& words) {
  for (const auto& [word, score] : words) vector->addWord(word, static_cast<float>(score));
}

double linear(double cosine) { return 1 - 2 * std::acos(cosine) / std::numbers::pi; }

Groups groupsOf(QlGatherResult* result) {
  Groups groups;
  for (int group = 0; group < result->numGroups(); ++group) {
    groups.emplace_back();
    for (int i = 0; i < result->numDocs(group); ++i) groups.back().push_back(result->doc(group, i));
  }
  return groups;
}

Groups gathered(QlGather* gather, const std::vector<int>& docs) {
  const std::unique_ptr<QlGather> owner(gather);
  const std::unique_ptr<QlGatherResult> result(
      gather->gather(docs.data(), static_cast<int>(docs.size())));
  return groupsOf(result.get());
}

TEST(QlGatherVector, AddsWords) {
  const struct {
    Words words;
    const char* entries;
  } cases[] = {
      {{}, ""},
      // Word 0 isn't in an empty entry.
      {{{0, 0.5}}, "0:0.5 "},
      // A known word gains and, while there is room, comes in again.
      {{{7, 0.5}, {7, 0.25}}, "7:0.75 7:0.25 "},
      {{{7, 0.5}, {7, 0.25}, {7, 0.125}}, "7:0.875 7:0.375 7:0.125 "},
      // Full: the first of the lowest goes, if it isn't above the new score.
      {{{1, 0.5}, {2, 0.25}, {3, 0.25}, {4, 0.25}}, "1:0.5 4:0.25 3:0.25 "},
      {{{1, 0.5}, {2, 0.25}, {3, 0.25}, {4, 0.125}}, "1:0.5 2:0.25 3:0.25 "},
      // The gain counts before the lowest is looked for.
      {{{1, 0.5}, {2, 0.25}, {3, 0.5}, {2, 0.5}}, "2:0.5 2:0.75 3:0.5 "},
  };
  for (const auto& c : cases) {
    QlGatherVector vector(3);
    fill(&vector, c.words);
    EXPECT_EQ(textOf(vector), c.entries);
  }
}

TEST(QlGatherVector, Dot) {
  const struct {
    Words a, b;
    double cosine;
  } cases[] = {
      {{{1, 0.5}}, {{2, 0.5}}, 0},
      {{{1, 0.5}, {3, 0.5}}, {{2, 0.5}, {3, 1.0}}, 0.5},
      {{{0, 0.5}}, {{0, 0.5}}, 0.25},
      {{{0, 0.5}}, {{1, 0.5}}, 0},
      {{{1, 2.0}}, {{1, 1.0}}, 1},                 // above 1
      {{{1, 0.5}, {1, 0.25}}, {{1, 0.5}}, 0.375},  // the first of two: 0.75
      {{}, {{1, 0.5}}, 0},
  };
  for (const auto& c : cases) {
    QlGatherVector a(3), b(4);
    fill(&a, c.a);
    fill(&b, c.b);
    a.sortByWord();
    b.sortByWord();
    const double expected = c.cosine == 0 ? 0 : linear(c.cosine);
    EXPECT_NEAR(QlGatherVector::dot(a, b), expected, 1e-6);
    Digests index({c.b});
    EXPECT_NEAR(QlGatherVector::dot(a, index.transpose(), 0), expected, 1e-4);
  }
}

// Documents 0 to 5: 0, 1 and 2 are a chain in which 0 and 2 have nothing in common,
// 3 and 4 are the same, 5 stands alone.
std::vector<Words> chain() {
  return {{{1, 0.8}, {2, 0.6}}, {{2, 0.6}, {3, 0.8}}, {{3, 0.7}, {4, 0.7}},
          {{7, 1.0}},           {{7, 1.0}},           {{9, 1.0}}};
}

TEST(QlGather, GroupsByAverageAndByLink) {
  const std::vector<int> all{0, 1, 2, 3, 4, 5};
  const struct {
    const char* name;
    int numGroups;
    float threshold;
    std::vector<int> docs;
    Groups average, link;
  } cases[] = {
      {"as many as asked for", 6, 0, all, {{0}, {1}, {2}, {3}, {4}, {5}}, {}},
      {"more than documents", 9, 0, {4, 0}, {{4}, {0}}, {}},
      {"the most alike", 5, 0, all, {{0}, {1}, {2}, {3, 4}, {5}}, {}},
      {"then the next", 4, 0, all, {{0}, {1, 2}, {3, 4}, {5}}, {}},
      {"nothing in common", 1, 0, all, {{0, 1, 2}, {3, 4}, {5}}, {}},
      {"in the order given", 3, 0, {5, 2, 4, 1, 3, 0}, {{5}, {2, 1, 0}, {4, 3}}, {}},
      // 1 and 2 join at 0.38. Then 0 is 0.23 from 1 and 0.12 from the group.
      {"threshold", 1, 0.2f, all, {{0}, {1, 2}, {3, 4}, {5}}, {{0, 1, 2}, {3, 4}, {5}}},
      {"no documents", 3, 0, {}, {}, {}},
  };
  Digests index(chain());
  for (const auto& c : cases) {
    for (QlGatherImpl* gather : {static_cast<QlGatherImpl*>(new QlGatherAvg(&index)),
                                 static_cast<QlGatherImpl*>(new QlGatherMax(&index))}) {
      const bool link = dynamic_cast<QlGatherMax*>(gather) != nullptr;
      gather->numGroups(c.numGroups);
      gather->threshGroup(c.threshold);
      EXPECT_EQ(gathered(gather, c.docs), link && !c.link.empty() ? c.link : c.average) << c.name;
    }
  }
}

TEST(QlGatherResult, SumsUpGroups) {
  Digests index({{{1, 0.25}, {2, 0.125}}, {{1, 0.5}}, {{5, 0.5}}, {{1, 0.5}}, {{3, 1.0}}});
  const int groupList[] = {0, 0, -1, 0, 2};
  const int docList[] = {0, 3, 2, 1, 4};
  QlGatherResultArrayAuto result(index.transpose(), index.wordTable(), groupList, docList, 5);
  EXPECT_EQ(groupsOf(&result), (Groups{{0, 3, 1}, {}, {4}, {2}}));
  const auto listed = [](FdBag* bag, auto&& name) {
    const std::unique_ptr<FdBag> owner(bag);
    const std::unique_ptr<FdIterator> pair(bag->iterator());
    std::string text;
    for (; pair->more(); pair->next()) text += name(pair->key()) + " ";
    return text;
  };
  const auto number = [](void* key) { return std::to_string(*static_cast<int*>(key)); };
  const auto word = [](void* key) {
    const auto* name = static_cast<WmWord*>(key);
    return std::string(name->letters(), static_cast<std::size_t>(name->num_letters()));
  };
  // Equally near documents in the order of the group; the one that differs last.
  EXPECT_EQ(listed(result.summaryDocs(0, 2), number), "3 1 ");
  EXPECT_EQ(listed(result.summaryDocs(0, 9), number), "3 1 0 ");
  EXPECT_EQ(listed(result.summaryDocs(1, 9), number), "");
  EXPECT_EQ(listed(result.summaryWords(3, 9), word), "w5 ");
  EXPECT_EQ(listed(result.summaryWords(0, 2), word), "w1 w1 ");
  // Sorted by word again, so that it finds the same documents.
  EXPECT_EQ(listed(result.summaryDocs(0, 2), number), "3 1 ");
}

TEST(QlGatherIterated, DealsDocumentsOut) {
  Digests index(chain());
  std::vector<int> all{0, 1, 2, 3, 4, 5};
  for (const int iterations : {0, 1, 2}) {
    auto* gather = new QlGatherIterated(&index, new QlGatherAvg(&index));
    gather->iterations(iterations);
    gather->numGroups(3);
    EXPECT_EQ(gathered(gather, all), (Groups{{0, 1, 2}, {3, 4}, {5}}));
  }

  // A truncated vector is scaled by the whole group.
  Digests same({{{1, 0.5}}, {{1, 0.5}}, {{1, 0.5}}, {{1, 0.5}}});
  QlGatherIterated scaled(&same, new QlGatherAvg(&same));
  scaled.numGroups(1);
  scaled.truncatedSize(1);
  scaled.gvsize(1);
  std::unique_ptr<QlGatherResult> result(scaled.gather(all.data(), 4));
  EXPECT_NEAR(result->summaryVector(0)->score(0), 0.5 / 4, 1e-4);

  // A sample of one document: what is unlike it joins it all the same.
  QlGatherIterated sampled(&index, new QlGatherAvg(&index));
  sampled.firstIterDocuments(1);
  result.reset(sampled.gather(all.data(), 6));
  EXPECT_EQ(groupsOf(result.get()), Groups{all});
  sampled.firstIterDocuments(0);
  result.reset(sampled.gather(all.data(), 6));
  EXPECT_EQ(groupsOf(result.get()), Groups{all});
  EXPECT_EQ(result->summaryVector(0), nullptr);
}

}  // namespace
}  // namespace vandrelle
