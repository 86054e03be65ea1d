#include "Parser/PrFilterCreators.h"

#include "Parser/PrArgParser.h"
#include "Parser/PrAugmentNode.h"
#include "Parser/PrManager.h"
#include "Parser/PrThreshhold.h"

namespace vandrelle {

int PrNotCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                            PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  if (arguments.numNodes() == 0) {
    err->fail("NOT requires a node argument");
    return 0;
  }
  if (arguments.numStrings() > 0) err->warn("Superfluous string arguments ignored");
  if (arguments.numNodes() > 1) err->warn("Superfluous nodes ignored");
  int documents = arguments.int_arg("docs", def_numDocuments_);
  // A query must not take the end away: a node below may have none, and would be
  // walked through all numbers.
  if (def_numDocuments_ > 0 && (documents <= 0 || documents > def_numDocuments_)) {
    documents = def_numDocuments_;
  }
  PrThreshhold* node =
      PrManager::Threshhold(arguments.float_arg("hi", 0.0f), arguments.float_arg("lo", 0.1f),
                            arguments.float_arg("t", 0.0f), documents);
  node->child(arguments.takeNode(0));
  result->setNode(node);
  return 1;
}

int PrAugmentCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                                PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  const int numNodes = arguments.numNodes();
  if (numNodes < 1 || numNodes > 2) {
    err->fail("This node requires 1 or 2 argument nodes");
    return 0;
  }
  const bool all = arguments.int_arg("all", 0) != 0;
  if (all && numNodes > 1) {
    err->fail("Only one node allowed with -all option");
    return 0;
  }
  if (arguments.numWords() > 0) err->warn("Ignoring extra word arguments");
  if (arguments.numStreams() > 0) err->warn("Ignoring extra stream arguments");
  const float scale = arguments.float_arg("s", def_scale_);
  const bool useMatchWeights = arguments.int_arg("um", def_useMatchWeights_) != 0;
  PrParserNode* target = all ? nullptr : arguments.takeNode(0);
  PrParserNode* match = arguments.takeNode(all ? 0 : 1);
  result->setNode(new PrAugmentNode(target, match, scale, useMatchWeights, all));
  return 1;
}

}  // namespace vandrelle
