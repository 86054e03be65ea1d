// Two newspaper feeds with fixed head lines. Both tell three layouts by the
// first bytes of the file: a notice (second byte "A"), else lines ended by LF,
// else by CR.
#pragma once

#include "DocumentImpl/DiHeaderParserImpl.h"

namespace vandrelle {

class DiEMSHeaderParser : public DiHeaderParserImpl {
 public:
  // Non-zero `defaultHeaders` lists "title" for indexing.
  explicit DiEMSHeaderParser(int defaultHeaders);

  // "author" and "title".
  char* getHeader(DcHeaderDocument* doc, const char* header) override;
  // The absolute position in the file.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;

 private:
  const char* GotoHeadLine(const char* head, int line, char sep) const;
  const char* FindNextTextLine(const char* line) const;
  char* ReadHeaders(const char* head, const char* header) const;

  char sep_ = '\n';  // line end of the document in hand
};

class DiIDGHeaderParser : public DiHeaderParserImpl {
 public:
  // Non-zero `defaultHeaders` lists "title" for indexing.
  explicit DiIDGHeaderParser(int defaultHeaders);

  // "title" alone.
  char* getHeader(DcHeaderDocument* doc, const char* header) override;
  // -1 when the file ends within the header.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;

 private:
  static constexpr int MAXTITLE = 128;

  const char* GotoHeadLine(const char* head, int line, char sep) const;
  char* ReadTitle(const char* head) const;

  char sep_ = '\n';  // line end of the document in hand
};

}  // namespace vandrelle
