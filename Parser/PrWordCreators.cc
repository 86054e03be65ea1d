#include "Parser/PrWordCreators.h"

#include <istream>

#include "Fun/Fd.h"
#include "Parser/PrArgParser.h"
#include "Token.h"

namespace vandrelle {

PrWordCreator::PrWordCreator() = default;
PrWordCreator::~PrWordCreator() = default;

int PrWordCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                             PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  if (arguments.numNodes() > 0) err->warn("This node does not accept node arguments");
  if (arguments.numWords() > kMaxWords) {
    err->fail("This node takes at most " + std::to_string(kMaxWords) + " words");
    return 0;
  }
  if (query_ != err->query()) made_.clear();
  query_ = err->query();
  Words& made = made_.emplace_back();
  made.queue.reset(Fd::Queue());
  for (FdStream* words = arguments.words(); words->more(); words->next()) {
    const auto* word = static_cast<const WmWord*>(words->key());
    made.queue->insert(word, word->num_bytes(), words->data(), static_cast<int>(sizeof(float)));
  }
  made.stream.reset(made.queue->iterator());
  result->type = PrArgStruct::kWordStream;
  result->parserDelete = 0;
  result->stream = made.stream.get();
  return 1;
}

int PrStreamCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                               PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  if (numArgs > 1) err->warn("Ignoring arguments to Stream Creator");
  if (is_ == nullptr || !is_->good()) {
    err->fail("Stream in bad state");
    return 0;
  }
  result->setStream(TkManager::SimpleStream(stemmer_, lexer_, is_));
  return 1;
}

}  // namespace vandrelle
