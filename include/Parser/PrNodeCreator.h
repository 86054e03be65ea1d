// An operator of the query language: makes a node or a stream of its arguments. A
// program binds it to a keyword with PrParser::AddKeyword; PrManager has the
// usual ones.
#pragma once

#include "Parser/PrArgStruct.h"
#include "Parser/PrParserError.h"

namespace vandrelle {

class PrNodeCreator {
 public:
  PrNodeCreator() = default;
  virtual ~PrNodeCreator() = default;
  PrNodeCreator(const PrNodeCreator&) = delete;
  PrNodeCreator& operator=(const PrNodeCreator&) = delete;

  // 1 with `result` filled, 0 on failure with `result` as it was. `args[0]` is
  // the keyword, `args[1]` to `args[numArgs - 1]` its arguments; what is still
  // owned in them afterwards is deleted by the caller. Messages go to `err`: a
  // failure there, or one warning too many, makes the caller drop the result.
  virtual int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                        PrParserError* err) = 0;
};

}  // namespace vandrelle
