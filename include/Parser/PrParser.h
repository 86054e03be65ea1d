// Turns query text into the nodes and streams that its operators make.
//
// The language is one of prefix expressions, (keyword argument ...), whose
// arguments are tokens or expressions. The parser knows no operators of its own.
// PrManager::Parser() makes one.
#pragma once

#include "Parser/PrArgStruct.h"

namespace vandrelle {

class PrNodeCreator;

class PrParser {
 public:
  PrParser() = default;
  virtual ~PrParser() = default;
  PrParser(const PrParser&) = delete;
  PrParser& operator=(const PrParser&) = delete;

  // Binds an operator to a keyword, in place of a former one. The keyword is
  // copied, 4091 bytes at most, and its case matters. The creator is not owned and
  // must outlive the parser.
  virtual void AddKeyword(const char* keyword, PrNodeCreator* creator) = 0;

  // 1 with `result` filled: what it owns is the caller's, see
  // PrArgStruct::deleteObject(). 0 with `result` empty: what was wrong has been
  // told, and everything made is deleted. What `result` held before is forgotten.
  // Throws nothing itself, but passes on what operators throw. An operator must
  // not parse with the parser that calls it.
  virtual int Parse(PrArgStruct* result, const char* query) = 0;
};

}  // namespace vandrelle
