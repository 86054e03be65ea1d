// Custom types, defined by a file beside the index. <root>.cus has two lines:
// the separator of articles, and the text behind which a title stands.
#pragma once

#include "DocumentImpl/DiHeaderParser.h"

namespace vandrelle {

class DiRunTimeHeaderParser : public DiHeaderParser {
 public:
  // `root` is not copied.
  explicit DiRunTimeHeaderParser(const char* root) : root_(root) {}

  // "title" alone: from behind the marker to the end of its line.
  char* getHeader(DcHeaderDocument* doc, const char* header) override;
  int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) override;  // always 0
  char* getStreamHeaders(DcHeaderDocument* doc) override;               // the title
  int headerPolicy() override { return 0; }

 private:
  const char* root_;
};

}  // namespace vandrelle
