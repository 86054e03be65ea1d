#include "Parser/PrManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "Parser/PrMultiNode.h"
#include "Parser/PrRangeNode.h"
#include "Parser/PrSparseNode.h"
#include "Parser/PrThreshhold.h"

namespace vandrelle {
namespace {

PrParserNode* sparse(std::initializer_list<float> scores) {
  PrSparseNode* node = PrManager::Sparse(8);
  int doc = 0;
  for (const float score : scores) node->add(++doc, score);
  node->sort();
  return node;
}

PrParserNode* with(PrMultiNode* node) {
  node->child(0, sparse({0.5f, 0.25f}));
  node->child(1, sparse({0.5f}));
  return node;
}

PrParserNode* without(PrParserNode* child, int documents) {
  PrThreshhold* node = PrManager::Not(0.5f);
  node->child(child);
  node->totaldocs(documents);
  return node;
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
      {"by document", sparse({0.5f, 12}), PrManager::print,
       "         1 : 0.50000   \n         2 : 12.00000  \n"},
      {"by score, ties by document", sparse({1, 2, 1}), PrManager::printSorted,
       "         1 : 1.00000   \t\t         2 : 2.00000   \n"
       "         2 : 2.00000   \t\t         1 : 1.00000   \n"
       "         3 : 1.00000   \t\t         3 : 1.00000   \n"},
      {"All", PrManager::All(2), PrManager::print,
       "         0 : 1.00000   \n         1 : 1.00000   \n"},
      {"a range", new PrRangeNode(3, 4), PrManager::print,
       "         3 : 1.00000   \n         4 : 1.00000   \n"},
      {"an empty range", new PrRangeNode(4, 3), PrManager::print, ""},
      {"Not", without(sparse({1}), 3), PrManager::print,
       "         0 : 0.50000   \n         2 : 0.50000   \n"},
      {"normalized", with(PrManager::Or(2, CombineNormalized)), PrManager::print,
       "         1 : 0.75000   \n         2 : 0.25000   \n"},
      {"product", with(PrManager::Or(2, CombineProduct)), PrManager::print,
       "         1 : 0.25000   \n         2 : 0.25000   \n"},
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
