#include "Parser/PrParserImpl.h"

#include <cstring>
#include <iostream>

#include "Parser/PrNodeCreator.h"

namespace vandrelle {

namespace {

// More of an expression is not shown: each level of a deep query may have a
// message of its own.
constexpr std::size_t kShownBytes = 1000;

int keySize(const char* keyword) { return static_cast<int>(std::strlen(keyword)) + 1; }

}  // namespace

PrParserImpl::PrParserImpl() = default;

PrParserImpl::~PrParserImpl() { deleteArgArray(0); }

void PrParserImpl::AddKeyword(const char* keyword, PrNodeCreator* creator) {
  keywordHash_.insert(keyword, keySize(keyword), &creator, static_cast<int>(sizeof creator));
}

PrNodeCreator* PrParserImpl::creatorOf(const char* keyword) {
  PrNodeCreator* creator = nullptr;
  int size = static_cast<int>(sizeof creator);
  keywordHash_.find(keyword, keySize(keyword), &creator, &size);
  return creator;
}

int PrParserImpl::Parse(PrArgStruct* result, const char* query) {
  result->clear();
  deleteArgArray(0);
  numExpressions_ = 0;
  error_.beginQuery();
  queryStream_ = std::make_unique<PrQueryStream>(query, &error_);
  if (error_.errorLevel() != PrParserError::kNone && !errorHandler()) return 0;
  if (!queryStream_->isOpen()) return failHere("Invalid query: missing open paren.");
  int parsed = createNode(result, 1);
  if (parsed != 0 && queryStream_->more()) {
    error_.currentToken(queryStream_->tokenNum());
    error_.warn("Ignoring text after the final close parenthesis.");
    if (!errorHandler()) parsed = 0;
  }
  error_.undeferMessages();
  finalErrorHandler();
  if (parsed == 0) result->deleteObject();
  return parsed;
}

// Stands on the opening parenthesis, and on success behind the closing one.
int PrParserImpl::createNode(PrArgStruct* result, int depth) {
  const int startToken = queryStream_->tokenNum();
  if (depth > kMaxDepth) {
    return failHere("Invalid query: expressions nested more than " + std::to_string(kMaxDepth) +
                    " deep.");
  }
  if (++numExpressions_ > kMaxExpressions) {
    return failHere("Invalid query: more than " + std::to_string(kMaxExpressions) +
                    " expressions.");
  }
  queryStream_->next();
  PrNodeCreator* creator = creatorOf(queryStream_->token());
  if (creator == nullptr) {
    return failHere("Invalid query: unknown keyword '" + std::string(queryStream_->token()) + "'.");
  }
  const std::size_t first = arguments_.size();
  if (!gatherArguments(startToken, depth)) {
    deleteArgArray(first);
    return 0;
  }
  error_.currentToken(startToken);
  const int numArgs = static_cast<int>(arguments_.size() - first);
  const int created = creator->CreateArg(result, numArgs, &arguments_[first], &error_);
  deleteArgArray(first);
  if (error_.errorLevel() != PrParserError::kNone && !errorHandler()) {
    result->deleteObject();
    return 0;
  }
  if (created == 0) result->clear();
  return created;
}

// Puts the keyword and the arguments on arguments_, and moves behind the closing
// parenthesis, if there is one. They share one array, since what maxSExpArgs()
// allows, set aside for each of the nested expressions, would take memory by the
// square of the length.
bool PrParserImpl::gatherArguments(int startToken, int depth) {
  PrQueryStream& tokens = *queryStream_;
  const auto room = static_cast<std::size_t>(tokens.maxSExpArgs(startToken)) + 1;
  const std::size_t first = arguments_.size();
  arguments_.emplace_back().setString(tokens.token());
  for (tokens.next(); tokens.more() && !tokens.isClose();) {
    if (arguments_.size() - first == room) {
      return failHere("Panic: ran out of argument space") != 0;
    }
    PrArgStruct argument;
    if (tokens.isOpen()) {
      if (!createNode(&argument, depth + 1)) return false;
    } else {
      argument.setString(tokens.token());
      tokens.next();
    }
    arguments_.push_back(argument);
  }
  if (tokens.more()) {
    tokens.next();
    return true;
  }
  error_.currentToken(startToken);
  error_.warn("Missing final close parenthesis. Continuing.");
  return errorHandler();
}

// A failure about the present token; always 0.
int PrParserImpl::failHere(const std::string& message) {
  error_.currentToken(queryStream_->tokenNum());
  error_.fail(message);
  errorHandler();
  return 0;
}

// The keyword in front is never owned.
void PrParserImpl::deleteArgArray(std::size_t first) {
  for (std::size_t i = first; i < arguments_.size(); ++i) arguments_[i].deleteObject();
  arguments_.resize(first);
}

bool PrParserImpl::errorHandler() {
  if (error_.numMessages() == 0) return true;
  writeMessages(std::cerr);
  if (error_.errorLevel() == PrParserError::kFailure) return false;
  error_.clearMessages();
  return true;
}

void PrParserImpl::finalErrorHandler() {}

void PrParserImpl::writeMessages(std::ostream& os) const {
  for (int i = 0; i < error_.numMessages(); ++i) {
    const bool failed = error_.messageLevel(i) == PrParserError::kFailure;
    os << (failed ? "Error: " : "Warning: ") << error_.message(i) << '\n';
    const std::string_view expression = queryStream_->expression(error_.messageToken(i));
    os << "  in expression: " << expression.substr(0, kShownBytes);
    os << (expression.size() > kShownBytes ? " ...\n" : "\n");
  }
  os.flush();
}

}  // namespace vandrelle
