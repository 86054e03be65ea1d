#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "Parser/PrBitVector.h"
#include "Parser/PrManager.h"
#include "Parser/PrMultiBoolean.h"
#include "Parser/PrRangeNode.h"
#include "Parser/PrSparseNodeImpl.h"
#include "Parser/PrThreshhold.h"

namespace vandrelle {
namespace {

using Pairs = std::vector<std::pair<int, float>>;

PrParserNode* sparse(const Pairs& pairs, int room = 8) {
  auto* node = new PrSparseNodeImpl(room);
  for (const auto& [doc, score] : pairs) node->add(doc, score);
  node->sort();
  return node;
}

// Everything the node answers.
Pairs read(PrParserNode& node) {
  Pairs pairs;
  node.forEach([&](int doc, float score) {
    pairs.emplace_back(doc, score);
    return pairs.size() < 100;
  });
  return pairs;
}

TEST(PrSparseNodeImpl, KeepsTheBest) {
  PrSparseNodeImpl node(3);
  node.add(10, 1);
  EXPECT_EQ(node.min(), 0);  // not full yet
  node.add(7, 2);
  node.add(9, 3);
  EXPECT_EQ(node.min(), 1);
  node.add(8, 4);
  EXPECT_EQ(node.min(), 2);
  node.add(6, 2);  // not above the lowest
  node.sort();
  EXPECT_EQ(read(node), (Pairs{{7, 2}, {8, 4}, {9, 3}}));
  EXPECT_EQ(node.max(), 4);
  node.sortByScore();
  EXPECT_EQ(node.docNum(0), 8);
  EXPECT_EQ(node.docNum(2), 7);
  EXPECT_EQ(node.max(), 4);
  node.zero();
  node.sort();
  EXPECT_EQ(read(node), Pairs{});
  EXPECT_EQ(node.min(), 0);
  EXPECT_EQ(node.max(), 0);
}

TEST(PrSparseNodeImpl, NextFindsItsPlaceAgain) {
  PrSparseNodeImpl node(8);
  for (const int doc : {30, 0, 20}) node.add(doc, 1);
  node.sort();
  EXPECT_EQ(read(node), (Pairs{{0, 1}, {20, 1}, {30, 1}}));
  int doc = 21;
  float score = 0;
  ASSERT_TRUE(node.next(&doc, &score));
  EXPECT_EQ(doc, 30);
  doc = 5;
  ASSERT_TRUE(node.next(&doc, &score));  // backwards
  EXPECT_EQ(doc, 20);
  doc = 31;
  EXPECT_FALSE(node.next(&doc, &score));
  EXPECT_EQ(doc, 31);
  EXPECT_EQ(node.score(20), 1);
  EXPECT_EQ(node.score(19), 0);
  node.add(25, 2);
  node.sort();
  EXPECT_EQ(node.score(25), 2);
}

Pairs readBoolean(PrMultiBoolean&& node, const std::vector<Pairs>& children) {
  for (std::size_t i = 0; i < children.size(); ++i) {
    node.child(static_cast<int>(i), sparse(children[i]));
  }
  return read(node);
}

TEST(PrMultiBoolean, And) {
  EXPECT_EQ(readBoolean(PrMultiAndNode(2, nullptr),
                        {{{1, 1}, {3, 1}, {5, 1}, {9, 1}}, {{2, 2}, {3, 2}, {9, 2}, {11, 2}}}),
            (Pairs{{3, 3}, {9, 3}}));
  EXPECT_EQ(readBoolean(PrMultiAndNode(2, nullptr), {{{1, 1}}, {}}), Pairs{});
  EXPECT_EQ(readBoolean(PrMultiAndNode(2, nullptr), {{{1, 1}}}), Pairs{});  // a child not set
  EXPECT_EQ(readBoolean(PrMultiAndNode(0, nullptr), {}), Pairs{});
}

// At document 1 the second child is the one that holds it, yet the first
// child's score of document 2 is what counts.
TEST(PrMultiBoolean, OrKeepsTheEarlierChildrensScores) {
  EXPECT_EQ(readBoolean(PrMultiOrNode(2, nullptr), {{{1, 1}, {4, 1}}, {{1, 2}, {3, 2}}}),
            (Pairs{{1, 3}, {3, 1}, {4, 1}}));
  EXPECT_EQ(readBoolean(PrMultiOrNode(2, CombineMax), {{{2, 7}}, {{1, 5}}}),
            (Pairs{{1, 7}, {2, 7}}));
  EXPECT_EQ(readBoolean(PrMultiOrNode(2, nullptr), {{{1, 1}}, {{2, 5}}}), (Pairs{{1, 1}, {2, 5}}));
  EXPECT_EQ(readBoolean(PrMultiOrNode(2, nullptr), {}), Pairs{});
}

TEST(PrThreshhold, TwoValues) {
  struct Case {
    float above, below, threshhold;
    int totaldocs;
    Pairs child;
    Pairs result;
  };
  const Pairs child{{1, 0.2f}, {2, 0.8f}, {4, 0.5f}};
  const std::vector<Case> cases = {
      {1, 0, 0.5f, 0, child, {{2, 1}}},
      {1, 0, 0, 0, child, {{1, 1}, {2, 1}, {4, 1}}},
      // absent documents count too
      {1, 0.5f, 0.5f, 6, child, {{0, 0.5f}, {1, 0.5f}, {2, 1}, {3, 0.5f}, {4, 1}, {5, 0.5f}}},
      {0, 0.1f, 0, 6, child, {{0, 0.1f}, {3, 0.1f}, {5, 0.1f}}},
      {0, 0.1f, 0, 3, {}, {{0, 0.1f}, {1, 0.1f}, {2, 0.1f}}},
      // the end is tested on the document asked for
      {0, 0.1f, 0, 2, {{0, 1}, {1, 1}}, {{2, 0.1f}}},
  };
  for (const Case& c : cases) {
    PrThreshhold node(c.above, c.below, c.threshhold, c.totaldocs);
    node.child(sparse(c.child));
    EXPECT_EQ(read(node), c.result) << c.above << ' ' << c.below << ' ' << c.totaldocs;
  }
}

TEST(PrBitVector, WordEnds) {
  PrBitVector node(129, 0.5f);
  for (const int doc : {-1, 0, 63, 64, 128, 129, 1000}) node.add(doc);
  EXPECT_EQ(read(node), (Pairs{{0, 0.5f}, {63, 0.5f}, {64, 0.5f}, {128, 0.5f}}));
  EXPECT_TRUE(node.get(128));
  EXPECT_FALSE(node.get(129));
  EXPECT_FALSE(node.get(-1));
  for (const auto& [first, last] : std::vector<std::pair<int, int>>{
           {-5, 3}, {4, 2}, {60, 60}, {60, 63}, {64, 127}, {62, 200}, {129, 300}}) {
    PrBitVector range(129);
    range.addRange(first, last);
    for (int doc = 0; doc < 129; ++doc) {
      EXPECT_EQ(range.get(doc), doc >= first && doc <= last) << first << '-' << last << ' ' << doc;
    }
  }
  PrBitVector empty(0);
  EXPECT_EQ(read(empty), Pairs{});
}

using Print = void (*)(PrParserNode*, std::ostream&);

TEST(PrManager, PrintedNodes) {
  const struct {
    const char* what;
    PrParserNode* node;
    Print print;
    std::string text;
  } cases[] = {
      {"null", nullptr, PrManager::print, "NULL node\n"},
      {"null, sorted", nullptr, PrManager::printSorted, "NULL node\n"},
      {"Null", PrManager::Null(), PrManager::printSorted, ""},
      {"by document", sparse({{1, 0.5f}, {2, 12}}), PrManager::print,
       "         1 : 0.50000   \n         2 : 12.00000  \n"},
      {"by score, ties by document", sparse({{1, 1}, {2, 2}, {3, 1}}), PrManager::printSorted,
       "         1 : 1.00000   \t\t         2 : 2.00000   \n"
       "         2 : 2.00000   \t\t         1 : 1.00000   \n"
       "         3 : 1.00000   \t\t         3 : 1.00000   \n"},
      {"a range", new PrRangeNode(3, 4), PrManager::print,
       "         3 : 1.00000   \n         4 : 1.00000   \n"},
      {"an empty range", new PrRangeNode(4, 3), PrManager::print, ""},
  };
  for (const auto& c : cases) {
    const std::unique_ptr<PrParserNode> node(c.node);
    std::ostringstream os;
    c.print(node.get(), os);
    EXPECT_EQ(os.str(), c.text) << c.what;
  }
  float none[] = {0, -1};
  EXPECT_EQ(CombineProduct(none, 2), 1);
}

TEST(PrManager, SortedPrintingHasItsLimit) {
  for (const int documents : {2000, 2001}) {
    const std::unique_ptr<PrParserNode> node(PrManager::All(documents));
    std::ostringstream os;
    testing::internal::CaptureStderr();
    PrManager::printSorted(node.get(), os);
    EXPECT_EQ(os.str().find("\t\t") != std::string::npos, documents == 2000);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              documents == 2000
                  ? ""
                  : "Warning: exceeded compile-time limit for printSorted. Using normal print.\n");
  }
}

}  // namespace
}  // namespace vandrelle
