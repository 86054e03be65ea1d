#include "DocumentImpl/DiRunTimeHeaderParser.h"

#include <strings.h>

#include <string>

#include "Document/DcFileStream.h"
#include "Document/DcHeaderDocument.h"
#include "DocumentImpl/DiText.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr int kBlock = 4096;

}  // namespace

char* DiRunTimeHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header == nullptr || strcasecmp(header, "title") != 0) return nullptr;
  DcSourceStream definition((std::string(root_) + ".cus").c_str(), kBlock);
  DiLineReader line(definition, DiLineReader::kMaxLine);
  if (!line.next() || !line.next()) return nullptr;
  const long title = findInDocument(doc, line.view(), false, doc->numCharacters());
  if (title < 0) return nullptr;
  std::string text;
  addLine(doc, title, kBlock, &text);
  return copyText(text);
}

int DiRunTimeHeaderParser::FindEndOfHeaders(std::ifstream*, long) { return 0; }

char* DiRunTimeHeaderParser::getStreamHeaders(DcHeaderDocument* doc) {
  return getHeader(doc, "title");
}

}  // namespace vandrelle
