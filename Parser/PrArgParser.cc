#include "Parser/PrArgParser.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "Parser/PrNumber.h"
#include "Parser/PrParserError.h"
#include "Parser/PrParserNode.h"
#include "Word.h"

namespace vandrelle {

namespace {

// A word and its length byte fill a buffer of 64 bytes at most.
constexpr std::size_t kWordBytes = 64;

// Stands for a node that somebody else owns.
class BorrowedNode final : public PrParserNode {
 public:
  explicit BorrowedNode(PrParserNode* node) : node_(node) {}
  int next(int* doc, float* score) override { return node_->next(doc, score); }

 private:
  PrParserNode* node_;
};

template <class T>
T entry(const std::vector<T>& entries, int i, T none) {
  if (i < 0 || i >= static_cast<int>(entries.size())) return none;
  return entries[static_cast<std::size_t>(i)];
}

}  // namespace

int PrArgParser::parseArgs(int firstArg, int numArgs, PrArgStruct* args, PrParserError* err) {
  allargs_ = args;
  firstArg_ = firstArg;
  numArgs_ = numArgs;
  float weight = 1.0f;
  for (int i = firstArg; i < numArgs; ++i) {
    PrArgStruct* arg = &args[i];
    switch (arg->type) {
      case PrArgStruct::kString:
        if (!parseString(arg->string, &weight, err)) return 0;
        break;
      case PrArgStruct::kNode:
        nodes_.push_back(arg);
        nodeWeights_.push_back(std::exchange(weight, 1.0f));
        break;
      case PrArgStruct::kStream:
      case PrArgStruct::kWordStream:
        streams_.push_back(arg);
        streamWW_.push_back(arg->type == PrArgStruct::kWordStream);
        streamWeights_.push_back(std::exchange(weight, 1.0f));
        break;
      default:
        other_.push_back(arg);
    }
  }
  return 1;
}

bool PrArgParser::parseString(char* text, float* weight, PrParserError* err) {
  if (text[0] == '-') {
    ++numFlags_;
    args_[text + 1] = "1";
    return true;
  }
  if (std::strncmp(text, "wt=", 3) == 0) {
    if (!PrNumber::read(text + 3, weight)) *weight = 1.0f;
    return true;
  }
  const char* assignment = std::strchr(text, '=');
  if (assignment != nullptr) {
    if (text[0] == '=' || std::string_view(text).back() == '=') {
      err->warn("Badly formed argument assignment");
      return false;
    }
    args_[std::string(text, static_cast<std::size_t>(assignment - text))] = assignment + 1;
    *weight = 1.0f;
    return true;
  }
  string_.push_back(text);
  const std::size_t length = std::strlen(text);
  if (length > 0 && length < kWordBytes) addWord(text, std::exchange(*weight, 1.0f));
  return true;
}

void PrArgParser::addWord(const char* text, float weight) {
  const WmLocalWord word(text);
  wordbag_.insert(word.word(), word->num_bytes(), &weight, static_cast<int>(sizeof weight));
  ++numWords_;
}

void PrArgParser::deleteArguments() {
  for (int i = firstArg_; i < numArgs_; ++i) allargs_[i].deleteObject();
}

bool PrArgParser::exist_arg(const char* key) const { return args_.contains(key); }

const char* PrArgParser::str_arg(const char* key, const char* def) const {
  const auto found = args_.find(key);
  return found != args_.end() ? found->second : def;
}

int PrArgParser::int_arg(const char* key, int def) const {
  const char* text = str_arg(key, nullptr);
  return text != nullptr ? PrNumber::toInt(text) : def;
}

float PrArgParser::float_arg(const char* key, float def) const {
  const char* text = str_arg(key, nullptr);
  return text != nullptr ? PrNumber::toFloat(text) : def;
}

FdStream* PrArgParser::words() {
  words_.reset(wordbag_.iterator());
  return words_.get();
}

FdStream* PrArgParser::stream(int i) const {
  const PrArgStruct* arg = entry<PrArgStruct*>(streams_, i, nullptr);
  return arg != nullptr ? arg->stream : nullptr;
}

float PrArgParser::streamWeight(int i) const { return entry(streamWeights_, i, 1.0f); }

bool PrArgParser::streamWeightedWords(int i) const { return entry(streamWW_, i, false); }

PrParserNode* PrArgParser::node(int i) const {
  const PrArgStruct* arg = entry<PrArgStruct*>(nodes_, i, nullptr);
  return arg != nullptr ? arg->node : nullptr;
}

PrParserNode* PrArgParser::takeNode(int i) {
  PrParserNode* taken = node(i);
  if (taken == nullptr) return nullptr;
  PrArgStruct* arg = nodes_[static_cast<std::size_t>(i)];
  if (arg->parserDelete == 0) taken = new BorrowedNode(taken);
  arg->clear();
  return taken;
}

float PrArgParser::nodeWeight(int i) const { return entry(nodeWeights_, i, 1.0f); }

void* PrArgParser::other(int i) const {
  const PrArgStruct* arg = entry<PrArgStruct*>(other_, i, nullptr);
  return arg != nullptr ? arg->object : nullptr;
}

const char* PrArgParser::string(int i) const { return entry<const char*>(string_, i, nullptr); }

}  // namespace vandrelle
