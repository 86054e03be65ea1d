// MEDLINE and EI records: tagged fields, where a field's lines are joined into
// one value. A record without an abstract is refused.
#pragma once

#include "DocumentImpl/DiKeyWordHeaderParser.h"

namespace vandrelle {

class FdBag;

// What the two record formats share: a table from field name to keyword, and the
// joining of lines.
class DiRecordHeaderParser : public DiKeyWordHeaderParser {
 public:
  ~DiRecordHeaderParser() override;

 protected:
  DiRecordHeaderParser(char headSeparator, int caseSensitivity);

  void addKeyword(const char* field, const char* keyword);
  void addMultiKey(const char* keyword);

  // Null for a name that is not in the table.
  char* getSearchWord(const char* header) override;
  int MultiLine(const char* searchword) override;
  // White space goes on with the value, the same keyword adds an item to it.
  int stillMulti(const char* searchword, const char* line) override;
  char* getMultiLine(const char* searchword, const char* line) override;

 private:
  FdBag* multiKeys_;
  FdBag* keywordTable_;
};

class DiMedLineHeaderParser : public DiRecordHeaderParser {
 public:
  // Non-zero `defaultHeaders` lists "title" and "keys" for indexing.
  explicit DiMedLineHeaderParser(int defaultHeaders);

  // Behind "AB:" and one blank.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;
};

class DiEIHeaderParser : public DiRecordHeaderParser {
 public:
  // Non-zero `defaultHeaders` lists "title" for indexing.
  explicit DiEIHeaderParser(int defaultHeaders);

  // Behind "AB" and one blank. A `docEnd` of 0 always refuses.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;
};

}  // namespace vandrelle
