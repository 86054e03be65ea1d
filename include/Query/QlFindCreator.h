// The operator of the query language that retrieves by words.
#pragma once

#include "Parser/PrNodeCreator.h"

namespace vandrelle {

class QlWordSearch;

// (keyword word ... ): the documents that the words lead to, as a node. Words may
// have weights (wt=), stand in quotes together, and come from a word operator.
//
//   n    the best documents only, all that match without it
class QlFindCreator final : public PrNodeCreator {
 public:
  // Not owned.
  explicit QlFindCreator(QlWordSearch* search) : search_(search) {}

  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  QlWordSearch* search_;
};

}  // namespace vandrelle
