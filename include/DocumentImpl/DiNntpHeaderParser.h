// Usenet articles, and those of the ClariNet feed in its batches.
#pragma once

#include "DocumentImpl/DiKeyWordHeaderParser.h"

namespace vandrelle {

class TkLexer;

class DiNntpHeaderParser : public DiKeyWordHeaderParser {
 public:
  // `lexer`, not owned, tells the end of the first paragraph, where the header
  // ends; without one there are no headers. Non-zero `defaultHeaders` lists
  // "subject" for indexing.
  DiNntpHeaderParser(TkLexer* lexer, int defaultHeaders);

  // "title" is answered from "subject".
  char* getHeader(DcHeaderDocument* doc, const char* header) override;

  // -1 when the file ends within the header; 0 when the article does.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;

 private:
  TkLexer* lexer_;
};

class DiClariHeaderParser : public DiNntpHeaderParser {
 public:
  using DiNntpHeaderParser::DiNntpHeaderParser;

  // -1 also for an article whose first line of text shows that it holds a
  // picture or nothing.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;
};

}  // namespace vandrelle
