#include "Parser/PrParserError.h"

#include <algorithm>

namespace vandrelle {

namespace {

long queries = 0;

}  // namespace

PrParserError::PrParserError(int maxMessages) : maxMessages_(std::max(maxMessages, 1)) {
  query_ = ++queries;
}

void PrParserError::beginQuery() {
  deferred_.clear();
  clearMessages();
  currentToken_ = 0;
  query_ = ++queries;
}

void PrParserError::warn(const std::string& msg) {
  const bool last = numMessages() + 1 >= maxMessages_;
  record(msg, last ? kFailure : kWarning);
}

void PrParserError::fail(const std::string& msg) { record(msg, kFailure); }

void PrParserError::record(const std::string& msg, Level level) {
  if (numMessages() < maxMessages_) messages_.push_back({msg, currentToken_, level});
  errorLevel_ = std::max(errorLevel_, level);
}

void PrParserError::clearMessages() {
  messages_.clear();
  errorLevel_ = kNone;
}

void PrParserError::deferMessages() {
  deferred_.insert(deferred_.end(), messages_.begin(), messages_.end());
  clearMessages();
}

void PrParserError::undeferMessages() {
  messages_.insert(messages_.begin(), deferred_.begin(), deferred_.end());
  for (const Message& message : deferred_) errorLevel_ = std::max(errorLevel_, message.level);
  deferred_.clear();
}

}  // namespace vandrelle
