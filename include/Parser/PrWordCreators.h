// The operators that make streams of words for other operators.
#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

#include "Parser/PrNodeCreator.h"

namespace vandrelle {

class FdBag;
class FdStream;
class TkLexer;
class TkStemmer;

// (words word ...): the words with their weights, a kWordStream that the parser
// does not own. It belongs to the operator and is good until that makes words for
// another query, or is deleted.
class PrWordCreator final : public PrNodeCreator {
 public:
  static constexpr int kMaxWords = 1000;

  PrWordCreator();
  ~PrWordCreator() override;
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  struct Words {
    std::unique_ptr<FdBag> queue;
    std::unique_ptr<FdStream> stream;
  };

  std::vector<Words> made_;  // for query_
  long query_ = 0;
};

// (text): the words of the input stream that the operator is bound to, from where
// it stands: a kStream that the parser owns, to be started with reset().
class PrStreamCreator final : public PrNodeCreator {
 public:
  // Owns none of them.
  PrStreamCreator(TkStemmer* stemmer, TkLexer* lexer, std::istream* is)
      : stemmer_(stemmer), lexer_(lexer), is_(is) {}
  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  TkStemmer* stemmer_;
  TkLexer* lexer_;
  std::istream* is_;
};

}  // namespace vandrelle
