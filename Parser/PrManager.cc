#include "Parser/PrManager.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <vector>

#include "Parser/PrAllNode.h"
#include "Parser/PrFilterCreators.h"
#include "Parser/PrListCreators.h"
#include "Parser/PrMultiBoolean.h"
#include "Parser/PrMultiNodeCreator.h"
#include "Parser/PrParserImpl.h"
#include "Parser/PrSparseNodeImpl.h"
#include "Parser/PrThreshhold.h"
#include "Parser/PrWordCreators.h"

namespace vandrelle {

namespace {

constexpr std::size_t kMaxSorted = 2000;

void printNull(std::ostream& os) { os << "NULL node\n"; }

}  // namespace

PrMultiNode* PrManager::And(int n, ScoreFunction function) {
  return new PrMultiAndNode(n, function);
}

PrMultiNode* PrManager::Or(int n, ScoreFunction function) { return new PrMultiOrNode(n, function); }

PrThreshhold* PrManager::Not(float value) { return new PrThreshhold(0, value, 0, 0); }

PrThreshhold* PrManager::Threshhold(float above, float below, float thresh, int totaldocs) {
  return new PrThreshhold(above, below, thresh, totaldocs);
}

PrSparseNode* PrManager::Sparse(int n) { return new PrSparseNodeImpl(n); }

PrSparseNode* PrManager::Null() { return new PrSparseNodeImpl(0); }

PrParserNode* PrManager::All(int n) { return new PrAllNode(n); }

PrParser* PrManager::Parser() { return new PrParserImpl; }

PrNodeCreator* PrManager::AndCreator() { return new PrMultiAndCreator; }

PrNodeCreator* PrManager::OrCreator() { return new PrMultiOrCreator; }

PrNodeCreator* PrManager::NotCreator(int numDocuments) { return new PrNotCreator(numDocuments); }

PrNodeCreator* PrManager::SparseCreator() { return new PrSparseCreator; }

PrNodeCreator* PrManager::MaxCreator(int numDocuments) {
  return new PrMultiMaxCreator(numDocuments);
}

PrNodeCreator* PrManager::StreamCreator(TkStemmer* stemmer, TkLexer* lexer, std::istream* is) {
  return new PrStreamCreator(stemmer, lexer, is);
}

PrNodeCreator* PrManager::BitVectorCreator(int size) { return new PrBitVectorCreator(size); }

PrNodeCreator* PrManager::WordCreator() { return new PrWordCreator; }

PrNodeCreator* PrManager::AugmentCreator(float scale) { return new PrAugmentCreator(scale); }

PrNodeCreator* PrManager::RangeCreator() { return new PrRangeCreator; }

void PrManager::print(PrParserNode* node, std::ostream& os) {
  if (node == nullptr) return printNull(os);
  node->forEach([&os](int doc, float score) {
    char line[80];
    std::snprintf(line, sizeof line, "%10d : %-10.5f\n", doc, static_cast<double>(score));
    os << line;
    return true;
  });
}

void PrManager::printSorted(PrParserNode* node, std::ostream& os) {
  if (node == nullptr) return printNull(os);
  std::vector<PrTuple> byDocument;
  node->forEach([&byDocument](int doc, float score) {
    byDocument.push_back({doc, score});
    return byDocument.size() <= kMaxSorted;
  });
  if (byDocument.size() > kMaxSorted) {
    std::cerr << "Warning: exceeded compile-time limit for printSorted. "
              << "Using normal print." << std::endl;
    return print(node, os);
  }
  std::vector<PrTuple> byScore = byDocument;
  std::stable_sort(byScore.begin(), byScore.end(),
                   [](const PrTuple& a, const PrTuple& b) { return a.score > b.score; });
  for (std::size_t i = 0; i < byScore.size(); ++i) {
    char line[160];
    std::snprintf(line, sizeof line, "%10d : %-10.5f\t\t%10d : %-10.5f\n", byDocument[i].doc,
                  static_cast<double>(byDocument[i].score), byScore[i].doc,
                  static_cast<double>(byScore[i].score));
    os << line;
  }
}

}  // namespace vandrelle
