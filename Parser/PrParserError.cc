#include "Parser/PrParserError.h"

#include <algorithm>
#include <utility>

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
  for (Message& message : messages_) {
    if (static_cast<int>(deferred_.size()) < maxMessages_) deferred_.push_back(std::move(message));
  }
  clearMessages();
}

void PrParserError::undeferMessages() {
  const std::vector<Message> since = std::exchange(messages_, std::exchange(deferred_, {}));
  for (const Message& message : messages_) errorLevel_ = std::max(errorLevel_, message.level);
  for (const Message& message : since) {
    if (numMessages() < maxMessages_) messages_.push_back(message);
  }
}

}  // namespace vandrelle
