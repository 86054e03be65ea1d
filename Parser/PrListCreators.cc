#include "Parser/PrListCreators.h"

#include <algorithm>
#include <memory>

#include "Parser/PrArgParser.h"
#include "Parser/PrBitVector.h"
#include "Parser/PrManager.h"
#include "Parser/PrMultiMax.h"
#include "Parser/PrNumber.h"
#include "Parser/PrRangeNode.h"
#include "Parser/PrSparseNode.h"

namespace vandrelle {

namespace {

constexpr int kSparseDocuments = 20;

void warnOfString(const char* text, PrParserError* err) {
  err->warn("Couldn't parse string: " + std::string(text));
}

// `doc` or `doc:score`. A score of -1 is none.
bool addScored(const char* text, PrMultiMax* node) {
  int doc = 0;
  float score = -1.0f;
  const char* rest = nullptr;
  if (!PrNumber::read(text, &doc, &rest)) return false;
  if (*rest == '\0') {
    node->add(doc, 1.0f);
    return true;
  }
  if (*rest != ':' || !PrNumber::read(rest + 1, &score) || score == -1.0f) return false;
  node->add(doc, score);
  return true;
}

// `n` or `a-b`.
bool addBits(const char* text, PrBitVector* node) {
  int first = 0;
  int last = 0;
  const char* rest = nullptr;
  if (!PrNumber::read(text, &first, &rest)) return false;
  if (*rest == '\0') {
    node->add(first);
    return true;
  }
  if (*rest != '-' || !PrNumber::read(rest + 1, &last, &rest)) return false;
  node->addRange(first, last);
  return true;
}

}  // namespace

int PrMultiMaxCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                                 PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  const int numScores = arguments.int_arg("n", 20);
  if (numScores > kMaxScores) {
    err->fail("This node keeps at most " + std::to_string(kMaxScores) + " documents");
    return 0;
  }
  if (numScores <= 0) {
    result->setNode(PrManager::Null());
    return 1;
  }
  const int numNodes = arguments.numNodes();
  auto node = std::make_unique<PrMultiMax>(numNodes, numScores, arguments.float_arg("min", 0.0f),
                                           numDocuments_);
  for (int i = 0; i < arguments.numStrings(); ++i) {
    if (!addScored(arguments.string(i), node.get())) warnOfString(arguments.string(i), err);
  }
  const bool weighted = arguments.int_arg("w", 0) != 0;
  for (int i = 0; i < numNodes; ++i) {
    node->child(i, arguments.takeNode(i));
    node->childWeight(i, weighted ? arguments.nodeWeight(i) : 1.0f);
  }
  node->normalize();
  result->setNode(node.release());
  return 1;
}

int PrSparseCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                               PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  if (arguments.numNodes() > 0) {
    err->fail("Sparse operator expects no nodes.");
    return 0;
  }
  if (arguments.numStrings() == 0) {
    err->fail("Not enough args to SPARSE operator.");
    return 0;
  }
  PrSparseNode* node = PrManager::Sparse(kSparseDocuments);
  for (int i = 0; i < arguments.numStrings(); ++i) {
    node->add(PrNumber::toInt(arguments.string(i)), 1.0f);
  }
  node->sort();
  result->setNode(node);
  return 1;
}

int PrRangeCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                              PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  if (numArgs != 3) {
    err->fail("Range operator requires two arguments");
    return 0;
  }
  if (arguments.numStrings() != 2) {
    err->fail("Range operator requires two string arguments");
    return 0;
  }
  result->setNode(
      new PrRangeNode(PrNumber::toInt(arguments.string(0)), PrNumber::toInt(arguments.string(1))));
  return 1;
}

int PrBitVectorCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                                  PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  auto node = std::make_unique<PrBitVector>(size_, arguments.float_arg("score", 1.0f));
  for (int i = 0; i < arguments.numStrings(); ++i) {
    if (!addBits(arguments.string(i), node.get())) warnOfString(arguments.string(i), err);
  }
  for (int i = 0; i < arguments.numNodes(); ++i) {
    const std::unique_ptr<PrParserNode> documents(arguments.takeNode(i));
    // Not beyond the size: a node may have no end.
    documents->forEach([&](int doc, float) {
      node->add(doc);
      return doc < node->size();
    });
  }
  result->setNode(node.release());
  return 1;
}

}  // namespace vandrelle
