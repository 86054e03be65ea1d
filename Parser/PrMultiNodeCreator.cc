#include "Parser/PrMultiNodeCreator.h"

#include <strings.h>

#include <memory>

#include "Parser/PrArgParser.h"
#include "Parser/PrManager.h"
#include "Word.h"

namespace vandrelle {

namespace {

ScoreFunction functionOf(const char* mode) {
  if (strcasecmp(mode, "avg") == 0) return CombineAverage;
  if (strcasecmp(mode, "norm") == 0) return CombineNormalized;
  if (strcasecmp(mode, "prod") == 0) return CombineProduct;
  if (strcasecmp(mode, "max") == 0) return CombineMax;
  // No text selects CombineMin: queries rely on `min` being the average.
  return CombineAverage;
}

void warnOfWords(PrArgParser& arguments, PrParserError* err) {
  if (arguments.numWords() == 0) return;
  std::string message = "Unknown string arguments: ";
  for (FdStream* words = arguments.words(); words->more(); words->next()) {
    const auto* word = static_cast<const WmWord*>(words->key());
    message.append("'").append(word->letters(), static_cast<std::size_t>(word->num_letters()));
    message.append("' ");
  }
  err->warn(message);
}

}  // namespace

int PrMultiNodeCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                                  PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  const int numNodes = arguments.numNodes();
  if (numNodes < 2) {
    err->fail("This node requires at least two sub-nodes");
    return 0;
  }
  if (numNodes > PrMultiBoolean::kMaxChildren) {
    err->fail("This node takes at most " + std::to_string(PrMultiBoolean::kMaxChildren) +
              " sub-nodes");
    return 0;
  }
  std::unique_ptr<PrMultiNode> node(newNode(numNodes));
  node->scoreFunction(functionOf(arguments.str_arg("mode", "avg")));
  warnOfWords(arguments, err);
  for (int i = 0; i < numNodes; ++i) {
    node->child(i, arguments.takeNode(i));
    node->childWeight(i, arguments.nodeWeight(i));
  }
  node->normalize();
  result->setNode(node.release());
  return 1;
}

PrMultiNode* PrMultiAndCreator::newNode(int numChildren) {
  return PrManager::And(numChildren, nullptr);
}

PrMultiNode* PrMultiOrCreator::newNode(int numChildren) {
  return PrManager::Or(numChildren, nullptr);
}

}  // namespace vandrelle
