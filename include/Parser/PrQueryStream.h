// The tokens of a query text.
//
//   token    runs up to a blank, a double quote, a parenthesis or the end; a tab
//            separates only in front of a token, inside it is a letter
//   ( and )  are tokens of their own
//   "text"   is one token without its quotes, which may be empty
//   \c       takes the character as it is, also a quote or a parenthesis; both
//            the backslash and the character stay in the token
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vandrelle {

class PrParserError;

class PrQueryStream {
 public:
  // The longest query in bytes.
  static constexpr int kMaxBytes = 1 << 20;

  // Cuts the whole text, of which it keeps a copy. Fails in `err` for a quote that
  // is not closed and for a text that is too long; then there are no tokens.
  // Null counts as empty.
  PrQueryStream(const char* query, PrParserError* err);

  // Stands on the first token at the beginning.
  void reset() { presToken_ = 0; }
  bool more() const { return presToken_ < numTokens(); }
  void next() { ++presToken_; }

  // The present token, owned by the stream and good as long as it; of no letters
  // at the end.
  char* token();
  // Copies it out with its NUL: `*size` holds the room at `place` in bytes and gets
  // the size of the token; no more than the room is written.
  void token(void* place, int* size);

  // A parenthesis, not one in quotes?
  bool isOpen() const { return isParenthesis(presToken_, '('); }
  bool isClose() const { return isParenthesis(presToken_, ')'); }

  int tokenNum() const { return presToken_; }
  int numTokens() const { return static_cast<int>(tokens_.size()); }

  // An upper bound on the arguments of the expression that begins at the token.
  int maxSExpArgs(int tokenNum) const { return numTokens() - tokenNum + 1; }

  // The text of the innermost expression that holds the token, from its opening
  // parenthesis to the closing one or to the end of the query; of the whole query
  // if no expression does. A new string, to be freed with delete[].
  char* localSExp(int tokenNum) const;
  // The same text in place, good as long as the stream.
  std::string_view expression(int tokenNum) const;

 private:
  bool scanToken();
  // The first place at or after `from` that `ends` the run and is not protected by
  // a backslash, or the end of the text.
  template <class Ends>
  std::size_t endOfRun(std::size_t from, Ends ends) const;
  void pairParentheses();
  bool isParenthesis(int tokenNum, char which) const;

  std::string query_;
  std::size_t presCh_ = 0;     // where the scan stands
  std::string text_;           // the tokens one behind the other, each with a NUL
  std::vector<int> tokens_;    // where each begins in text_
  std::vector<int> offsets_;   // where each begins in query_, its quote included
  std::vector<int> closings_;  // of an opening parenthesis its closing one, or -1
  int presToken_ = 0;
  char end_[1] = {};  // the token behind the last one
};

}  // namespace vandrelle
