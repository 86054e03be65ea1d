// The newspaper feed: lines that start with a dot begin a field, "..HD:" the
// head lines and "..LD:" the lead paragraph, with which the text begins.
#pragma once

#include "DocumentImpl/DiKeyWordHeaderParser.h"

namespace vandrelle {

class DiTimesHeaderParser : public DiKeyWordHeaderParser {
 public:
  // Non-zero `defaultHeaders` lists "title" for indexing.
  explicit DiTimesHeaderParser(int defaultHeaders);

  // -1 for a document without a lead paragraph.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;
  char* extractHeader(std::istream* stream, const char* header) override;

 protected:
  char* getSearchWord(const char* header) override;
  int MultiLine(const char* searchword) override;
  int stillMulti(const char* searchword, const char* line) override;
  char* getMultiLine(const char* searchword, const char* line) override;

 private:
  char* getHeaderLines(std::istream* stream);
};

}  // namespace vandrelle
