#include "Parser/PrQueryStream.h"

#include <algorithm>
#include <cstring>

#include "Parser/PrParserError.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

// Of a text that is too long only this much is kept, to be shown in the message.
constexpr std::size_t kKeptBytes = 1000;

bool endsToken(char c) { return c == ' ' || c == '"' || c == '(' || c == ')'; }

}  // namespace

PrQueryStream::PrQueryStream(const char* query, PrParserError* err) {
  if (query == nullptr) query = "";
  const std::size_t length = strnlen(query, kMaxBytes + 1);
  if (length > kMaxBytes) {
    query_.assign(query, kKeptBytes);
    err->fail("Invalid query: text longer than " + std::to_string(kMaxBytes) + " bytes.");
    return;
  }
  query_.assign(query, length);
  while (scanToken()) {
  }
  if (presCh_ < query_.size()) {
    tokens_.clear();
    err->fail("Invalid query: open-ended string in query.");
  }
  pairParentheses();
}

// False at the end, and in front of a quote that is not closed.
bool PrQueryStream::scanToken() {
  presCh_ = std::min(query_.find_first_not_of(" \t", presCh_), query_.size());
  if (presCh_ == query_.size()) return false;
  const std::size_t start = presCh_;
  const bool quoted = query_[start] == '"';
  std::size_t begin = start;
  std::size_t end = start + 1;
  if (quoted) {
    end = endOfRun(++begin, [](char c) { return c == '"'; });
    if (end == query_.size()) return false;
  } else if (query_[start] != '(' && query_[start] != ')') {
    end = endOfRun(begin, endsToken);
  }
  tokens_.push_back(static_cast<int>(text_.size()));
  offsets_.push_back(static_cast<int>(start));
  text_.append(query_, begin, end - begin).push_back('\0');
  presCh_ = quoted ? end + 1 : end;
  return true;
}

template <class Ends>
std::size_t PrQueryStream::endOfRun(std::size_t from, Ends ends) const {
  while (from < query_.size() && !ends(query_[from])) from += query_[from] == '\\' ? 2 : 1;
  return std::min(from, query_.size());
}

char* PrQueryStream::token() {
  if (!more()) return end_;
  return text_.data() + tokens_[static_cast<std::size_t>(presToken_)];
}

void PrQueryStream::token(void* place, int* size) {
  const char* text = token();
  const int bytes = static_cast<int>(std::strlen(text)) + 1;
  const int room = std::min(*size, bytes);
  if (place != nullptr && room > 0) std::memcpy(place, text, static_cast<std::size_t>(room));
  *size = bytes;
}

bool PrQueryStream::isParenthesis(int tokenNum, char which) const {
  if (tokenNum < 0 || tokenNum >= numTokens()) return false;
  return query_[static_cast<std::size_t>(offsets_[static_cast<std::size_t>(tokenNum)])] == which;
}

std::string_view PrQueryStream::expression(int tokenNum) const {
  int first = std::min(tokenNum, numTokens() - 1);
  // Whole expressions in front of the token do not hold it.
  for (int closed = 0; first >= 0; --first) {
    if (isParenthesis(first, ')') && first != tokenNum) ++closed;
    if (isParenthesis(first, '(') && closed-- == 0) break;
  }
  const std::string_view query = query_;
  if (first < 0) return query;
  const auto begin = static_cast<std::size_t>(offsets_[static_cast<std::size_t>(first)]);
  const int last = closings_[static_cast<std::size_t>(first)];
  if (last < 0) return query.substr(begin);
  const auto end = static_cast<std::size_t>(offsets_[static_cast<std::size_t>(last)]);
  return query.substr(begin, end + 1 - begin);
}

char* PrQueryStream::localSExp(int tokenNum) const {
  return copyText(std::string(expression(tokenNum)).c_str());
}

// For each opening parenthesis its closing one.
void PrQueryStream::pairParentheses() {
  closings_.assign(tokens_.size(), -1);
  std::vector<int> open;
  for (int i = 0; i < numTokens(); ++i) {
    if (isParenthesis(i, '(')) open.push_back(i);
    if (!isParenthesis(i, ')') || open.empty()) continue;
    closings_[static_cast<std::size_t>(open.back())] = i;
    open.pop_back();
  }
}

}  // namespace vandrelle
