// The operator of the query language that gathers documents.
#pragma once

#include <memory>
#include <vector>

#include "Parser/PrNodeCreator.h"

namespace vandrelle {

class IkIndexBinder;
class PrArgParser;
class QlGather;
class QlGatherResult;

// (keyword node ... ): the documents of all its nodes, each once, in groups. The
// result is an argument of the type kGroups, a QlGatherResult, that other operators
// don't know; it stays owned by the operator, until that gathers for another query
// or goes.
//
//   m      dd: single link; avg: group average; idd, iavg: the same on a sample.
//          Without it what the operator was made for
//   g      how many groups, 5 without it
//   t      groups less alike than this stay apart, 0.0
//   fid    documents of the sample, 50
//   gv     words of a group's vector, 128
//   trunc  documents of a group that its vector is made of, 0 for all
class QlGatherCreator final : public PrNodeCreator {
 public:
  static constexpr unsigned char kGroups = 16;
  // The most documents that are compared one by one, and words of a vector.
  static constexpr int kMaxCompared = 1000;
  static constexpr int kMaxVectorSize = 10000;

  enum class Method { kDD, kCentroid, kIterDD, kIterCentroid };

  // `index` isn't owned.
  QlGatherCreator(IkIndexBinder* index, Method method);
  ~QlGatherCreator() override;

  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* err) override;

 private:
  IkIndexBinder* index_;
  Method method_;
  long query_ = -1;
  std::vector<std::unique_ptr<QlGatherResult>> results_;  // of the query in hand
};

}  // namespace vandrelle
