#include "Parser/PrManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "Parser/PrRangeNode.h"
#include "Parser/PrSparseNode.h"

namespace vandrelle {
namespace {

PrParserNode* sparse(std::initializer_list<float> scores) {
  PrSparseNode* node = PrManager::Sparse(8);
  int doc = 0;
  for (const float score : scores) node->add(++doc, score);
  node->sort();
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
