// Sorts the arguments of an operator into classes. An operator makes one, asks
// it, and lets it delete what was not taken.
//
//   -name          a flag: the key `name` with the value "1"
//   wt=number      the weight of the next node, stream or word, 1.0 without it;
//                  what is no number stands for 1.0
//   name=value     a key with its value; a `=` in front or at the end is refused
//   anything else  a plain string, and below 64 characters also a word
//
// The first form that fits counts. Each node, stream, word or key with a value
// sets the weight back to 1.0.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Fun/FdQueue.h"
#include "Parser/PrArgStruct.h"

namespace vandrelle {

class PrParserError;

class PrArgParser {
 public:
  PrArgParser() = default;
  // Deletes what is left of the owned objects among the arguments and clears their
  // entries; the array must still be there.
  ~PrArgParser() { deleteArguments(); }
  PrArgParser(const PrArgParser&) = delete;
  PrArgParser& operator=(const PrArgParser&) = delete;

  // Once: sorts `args[firstArg]` to `args[numArgs - 1]`. 0, with a warning in `err`,
  // for a key with a misplaced `=`.
  int parseArgs(int firstArg, int numArgs, PrArgStruct* args, PrParserError* err);

  // By key: of a key given twice the last value counts. Numbers are read as atoi
  // and atof do, 0 for what is none, too large ones as the nearest that there is.
  // The text of str_arg() is good as long as the arguments.
  bool exist_arg(const char* key) const;
  const char* str_arg(const char* key, const char* def) const;
  int int_arg(const char* key, int def) const;
  float float_arg(const char* key, float def) const;

  // The words in their order, folded to lower case, each with its weight (a float)
  // as data. Owned by this object; a call stands on the first word. A string of no
  // letters is no word.
  FdStream* words();
  int numWords() const { return numWords_; }

  // For all that follow: `i` counts from 0, the answer is null, or a weight of 1.0,
  // at and above the number. What is answered stays owned as it was.

  FdStream* stream(int i) const;
  float streamWeight(int i) const;
  // Does the stream have words with float weights (kWordStream)?
  bool streamWeightedWords(int i) const;
  int numStreams() const { return static_cast<int>(streams_.size()); }

  PrParserNode* node(int i) const;
  // Hands the node over to the caller; node(i) is null from then on. For a node that
  // the arguments do not own it is a new one, which answers as that one does.
  PrParserNode* takeNode(int i);
  float nodeWeight(int i) const;
  int numNodes() const { return static_cast<int>(nodes_.size()); }

  void* other(int i) const;
  int numOther() const { return static_cast<int>(other_.size()); }

  // The plain strings in their order.
  const char* string(int i) const;
  int numStrings() const { return static_cast<int>(string_.size()); }

  int numFlags() const { return numFlags_; }

 private:
  bool parseString(char* text, float* weight, PrParserError* err);
  void addWord(const char* text, float weight);
  void deleteArguments();

  std::unordered_map<std::string, const char*> args_{16};
  int numFlags_ = 0;
  std::vector<const char*> string_;
  FdQueue wordbag_;
  std::unique_ptr<FdStream> words_;
  int numWords_ = 0;
  std::vector<PrArgStruct*> streams_;
  std::vector<float> streamWeights_;
  std::vector<bool> streamWW_;
  std::vector<PrArgStruct*> nodes_;
  std::vector<float> nodeWeights_;
  std::vector<PrArgStruct*> other_;
  PrArgStruct* allargs_ = nullptr;
  int firstArg_ = 0;
  int numArgs_ = 0;
};

}  // namespace vandrelle
