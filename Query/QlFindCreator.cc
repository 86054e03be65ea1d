#include "Query/QlFindCreator.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "Fun/FdStream.h"
#include "Parser/PrArgParser.h"
#include "Parser/PrParserError.h"
#include "Parser/PrSparseNodeImpl.h"
#include "Query/QlWordSearch.h"
#include "Word.h"

namespace vandrelle {
namespace {

// Keys are words, data their weights as floats.
bool addStream(FdStream* stream, QlWords& words) {
  for (stream->reset(); stream->more(); stream->next()) {
    const auto* word = static_cast<const WmWord*>(stream->key());
    float weight = 1.0f;
    if (stream->dataSize() == static_cast<int>(sizeof weight)) {
      std::memcpy(&weight, stream->data(), sizeof weight);
    }
    const std::string_view text(word->letters(), static_cast<std::size_t>(word->num_letters()));
    if (!words.addText(text, weight)) return false;
  }
  return true;
}

bool addArguments(PrArgParser& arguments, QlWords& words) {
  if (!addStream(arguments.words(), words)) return false;
  for (int i = 0; i < arguments.numStreams(); ++i) {
    if (arguments.streamWeightedWords(i) && !addStream(arguments.stream(i), words)) return false;
  }
  // Strings too long to be a word are phrases in quotes.
  for (int i = 0; i < arguments.numStrings(); ++i) {
    const std::string_view text = arguments.string(i);
    if (text.size() > WmWord::kMaxLetters - 1 && !words.addText(text, 1.0f)) return false;
  }
  return true;
}

}  // namespace

int QlFindCreator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                             PrParserError* err) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, err)) return 0;
  if (arguments.numNodes() > 0) {
    err->fail("This node finds words and takes no sub-nodes");
    return 0;
  }
  QlWords words(search_->stemmer());
  if (!addArguments(arguments, words)) {
    err->fail("This node takes at most " + std::to_string(QlWords::kMaxWords) + " words");
    return 0;
  }
  if (words.empty()) {
    err->fail("This node requires at least one word");
    return 0;
  }
  const int count = arguments.int_arg("n", search_->numDocuments());
  if (count < 1) {
    err->fail("This node finds at least 1 document: n must not be below it");
    return 0;
  }
  std::unique_ptr<PrSparseReadonly> found = search_->retrieve(words, count, nullptr);
  found->sort();
  result->setNode(found.release());
  return 1;
}

}  // namespace vandrelle
