// HTML pages: the header ends behind the title, the only value there is.
#pragma once

#include "DocumentImpl/DiHeaderParserImpl.h"

namespace vandrelle {

class DiHtmlHeaderParser : public DiHeaderParserImpl {
 public:
  // Non-zero `defaultHeaders` lists "title" for indexing.
  explicit DiHtmlHeaderParser(int defaultHeaders);

  char* getHeader(DcHeaderDocument* doc, const char* header) override;

  // Behind "<body>", else "</head>", else "</title>", whichever is found within
  // two lines behind the title; 0 and the stream back where it was for a page
  // without a title; -1 for a header that ends at byte 32768 or later.
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;
};

}  // namespace vandrelle
