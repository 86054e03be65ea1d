#include "DocumentImpl/DiEMSHeaderParser.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <string>

#include "Document/DcHeaderDocument.h"
#include "DocumentImpl/DiText.h"
#include "Token/CharacterClass.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr int kEof = std::char_traits<char>::eof();
constexpr char kNoticeMark = 'A';  // as the second byte of the file
constexpr int kFirstReturns = 4;
constexpr int kClosingReturns = 3;
constexpr int kMostRepeats = 6;
// Where the head lines are, counted from 0, by the kind of line end.
constexpr int kHeadLineLF = 7;
constexpr int kHeadLineCR = 5;

enum class Layout { kNotice, kLineFeeds, kReturns };

Layout layoutOf(std::string_view head) {
  if (head.size() > 1 && head[1] == kNoticeMark) return Layout::kNotice;
  const std::size_t end = head.find_first_of("\r\n");
  return end != head.npos && head[end] == '\r' ? Layout::kReturns : Layout::kLineFeeds;
}

// The same from a file; leaves the stream behind the first line end.
Layout skipFirstLine(std::ifstream& file) {
  int c = file.get();
  const Layout layout = file.peek() == kNoticeMark ? Layout::kNotice : Layout::kLineFeeds;
  for (;; c = file.get()) {
    if (c == kEof || c == '\n') return layout;
    if (c == '\r' && layout != Layout::kNotice) return Layout::kReturns;
  }
}

void skipIndentedLines(std::ifstream& file) {
  for (;;) {
    const int c = file.peek();
    if (c != '\n' && c != ' ') return;
    while (file.get() != '\n') {
      if (!file.good()) return;
    }
  }
}

// One CR has been read.
void skipReturns(std::ifstream& file) {
  for (int returns = 1; returns < kFirstReturns;) {
    const int c = file.get();
    if (c == kEof || c == '\0') return;
    if (c == '\r') ++returns;
  }
  int repeats = 0;
  for (int returns = 0; returns < kClosingReturns && repeats <= kMostRepeats;) {
    const int c = file.get();
    if (c == kEof || c == '\0') return;
    if (c == '\r') {
      ++returns;
    } else if (c != '\n' && returns > 0) {
      returns = 0;
      ++repeats;
    }
  }
}

// Moves to the end of the header and answers that position; -1 at end of file.
long skipHead(std::ifstream& file) {
  switch (skipFirstLine(file)) {
    case Layout::kNotice:
      break;
    case Layout::kLineFeeds:
      skipIndentedLines(file);
      break;
    case Layout::kReturns:
      skipReturns(file);
      break;
  }
  if (file.eof()) return -1;
  return file.tellg();
}

long fileSize(std::ifstream& file) {
  file.clear();
  file.seekg(0, std::ios::end);
  return file.tellg();
}

}  // namespace

DiEMSHeaderParser::DiEMSHeaderParser(int defaultHeaders) {
  if (defaultHeaders != 0) AddStreamHeader("title", 1);
}

int DiEMSHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long /*docEnd*/) {
  const long end = skipHead(*thisFile);
  return static_cast<int>(end >= 0 ? end : fileSize(*thisFile));
}

char* DiEMSHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header == nullptr) return nullptr;
  const std::string text = headerText(doc);
  if (text.empty()) return nullptr;
  const char* head = text.c_str();
  switch (layoutOf(text)) {
    case Layout::kNotice:
      sep_ = '\n';
      break;
    case Layout::kLineFeeds:
      sep_ = '\n';
      head = GotoHeadLine(head, kHeadLineLF, sep_);
      break;
    case Layout::kReturns:
      sep_ = '\r';
      head = GotoHeadLine(head, kHeadLineCR, sep_);
      break;
  }
  return ReadHeaders(head, header);
}

const char* DiEMSHeaderParser::GotoHeadLine(const char* head, int line, char sep) const {
  for (; line > 0; --line) {
    while (*head != '\0' && *head != sep) ++head;
    if (*head != '\0') ++head;
  }
  while (*head == ' ') ++head;
  return head;
}

const char* DiEMSHeaderParser::FindNextTextLine(const char* line) const {
  while (character_class::isSpace(*line)) ++line;
  return line;
}

char* DiEMSHeaderParser::ReadHeaders(const char* head, const char* header) const {
  const bool wantsAuthor = strcasecmp(header, "author") == 0;
  if (!wantsAuthor && strcasecmp(header, "title") != 0) return nullptr;
  const char* const headEnd = head + std::strlen(head);
  std::string title;
  bool any = false;
  for (const char* at = FindNextTextLine(head); *at != '\0'; at = FindNextTextLine(at)) {
    const char* lineEnd = std::find(at, headEnd, sep_);
    const char* textEnd = lineEnd;
    while (at < lineEnd && *at == '<') {
      const char* tagEnd = std::find(at, lineEnd, '>');
      at = tagEnd == lineEnd ? lineEnd : tagEnd + 1;
      textEnd = std::find(at, lineEnd, '<');
    }
    const std::string_view text(at, static_cast<std::size_t>(textEnd - at));
    at = lineEnd;
    if (text.empty()) continue;
    if (text.starts_with("By ")) {
      if (wantsAuthor) return copyText(text.substr(3));
      continue;
    }
    if (any) title += '/';
    title += text;
    any = true;
  }
  return wantsAuthor || !any ? nullptr : copyText(title);
}

DiIDGHeaderParser::DiIDGHeaderParser(int defaultHeaders) {
  if (defaultHeaders != 0) AddStreamHeader("title", 1);
}

int DiIDGHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long /*docEnd*/) {
  const long start = thisFile->tellg();
  const long end = skipHead(*thisFile);
  return end < 0 ? -1 : static_cast<int>(end - start);
}

char* DiIDGHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header == nullptr || strcasecmp(header, "title") != 0) return nullptr;
  const std::string text = headerText(doc);
  if (text.empty()) return nullptr;
  const Layout layout = layoutOf(text);
  if (layout == Layout::kNotice) return copyText("Advertisement");
  sep_ = layout == Layout::kReturns ? '\r' : '\n';
  const int line = layout == Layout::kReturns ? kHeadLineCR : kHeadLineLF;
  const char* head = GotoHeadLine(text.c_str(), line, sep_);
  return head == nullptr ? nullptr : ReadTitle(head);
}

const char* DiIDGHeaderParser::GotoHeadLine(const char* head, int line, char sep) const {
  for (; line > 0; --line) {
    head = std::strchr(head, sep);
    if (head == nullptr) return nullptr;
    ++head;
  }
  while (*head == ' ') ++head;
  return head;
}

char* DiIDGHeaderParser::ReadTitle(const char* head) const {
  std::string title;
  bool insideTag = false;
  for (; *head != '\0' && title.size() < MAXTITLE - 1; ++head) {
    if (insideTag) {
      insideTag = *head != '>';
    } else if (*head == '<') {
      insideTag = true;
    } else if (*head == sep_) {
      if (!title.empty() && title.back() != '/') title += '/';
    } else if (*head != '\r' && *head != '\n') {
      title += *head;
    }
  }
  if (!title.empty() && title.back() == '/') title.pop_back();
  return copyText(title);
}

}  // namespace vandrelle
