// The parser, which tells its messages on the error stream. A program that wants
// them elsewhere derives from it and overrides the handlers.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "Fun/FdTable.h"
#include "Parser/PrParser.h"
#include "Parser/PrParserError.h"
#include "Parser/PrQueryStream.h"

namespace vandrelle {

class PrParserImpl : public PrParser {
 public:
  // Queries beyond these limits fail; see also PrQueryStream::kMaxBytes. Nodes cost
  // memory by the size of the collection, so their number is limited as well as
  // the depth.
  static constexpr int kMaxDepth = 1000;
  static constexpr int kMaxExpressions = 2000;

  PrParserImpl();
  ~PrParserImpl() override;

  void AddKeyword(const char* keyword, PrNodeCreator* creator) override;
  int Parse(PrArgStruct* result, const char* query) override;

  // Called when there are messages. Tells them, clears warnings and answers
  // true if parsing may go on, false after a failure. An overriding handler that
  // only collects calls error_.deferMessages() and lets finalErrorHandler() tell.
  virtual bool errorHandler();

  // Called when a query has been read, with all messages that were deferred. Does
  // nothing. A text that could not be cut into tokens, or has no opening
  // parenthesis, does not come so far.
  virtual void finalErrorHandler();

 protected:
  // Writes each message as a line that begins with "Warning: " or "Error: ", and a
  // line with the expression that it is about, cut where it is very long.
  void writeMessages(std::ostream& os) const;

  FdTable keywordHash_;  // keyword, with its NUL, to PrNodeCreator*
  PrParserError error_;
  std::unique_ptr<PrQueryStream> queryStream_;  // of the query in hand, or the last one

 private:
  PrNodeCreator* creatorOf(const char* keyword);
  int createNode(PrArgStruct* result, int depth);
  bool gatherArguments(int startToken, int depth);
  int failHere(const std::string& message);
  void deleteArgArray(std::size_t first);

  // The arguments of all expressions that are being read, innermost last. A
  // member, so that those of a query whose operator has thrown are not lost.
  std::vector<PrArgStruct> arguments_;
  int numExpressions_ = 0;
};

}  // namespace vandrelle
