// The messages about one query, as its parts are read.
#pragma once

#include <string>
#include <vector>

namespace vandrelle {

class PrParserError {
 public:
  enum Level { kNone = 0, kWarning = 1, kFailure = 2 };

  // Room for `maxMessages` messages, at least 1.
  explicit PrParserError(int maxMessages = 16);

  // A new query: no messages, token 0, a new query().
  void beginQuery();

  // Records a copy of the message for currentToken(). The warning that fills the
  // room makes the level a failure and counts as its message; where there is no
  // room the text is lost, but not the failure.
  void warn(const std::string& msg);
  void fail(const std::string& msg);

  // No messages, level 0. Those set aside stay.
  void clearMessages();

  // Sets the messages aside, so that parsing goes on as if there were none, until
  // undeferMessages() puts all of them, room or not, in front of those recorded
  // since. For a parser that tells everything at the end.
  void deferMessages();
  void undeferMessages();

  int numMessages() const { return static_cast<int>(messages_.size()); }
  Level errorLevel() const { return errorLevel_; }
  int maxMessages() const { return maxMessages_; }

  // `i` from 0 below numMessages(): the text, the number of the token that it is
  // about, and whether it is a warning or the failure.
  const char* message(int i) const { return at(i).text.c_str(); }
  int messageToken(int i) const { return at(i).token; }
  Level messageLevel(int i) const { return at(i).level; }

  // The token that the next messages are about.
  int currentToken() const { return currentToken_; }
  void currentToken(int token) { currentToken_ = token; }

  // A number that no other query of this process has.
  long query() const { return query_; }

 private:
  struct Message {
    std::string text;
    int token;
    Level level;
  };

  const Message& at(int i) const { return messages_[static_cast<std::size_t>(i)]; }
  void record(const std::string& msg, Level level);

  std::vector<Message> messages_;
  std::vector<Message> deferred_;
  Level errorLevel_ = kNone;
  int maxMessages_;
  int currentToken_ = 0;
  long query_;
};

}  // namespace vandrelle
