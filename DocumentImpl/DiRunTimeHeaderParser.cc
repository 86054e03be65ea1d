#include "DocumentImpl/DiRunTimeHeaderParser.h"

#include <strings.h>

#include <algorithm>
#include <string>

#include "Document/DcFileStream.h"
#include "Document/DcHeaderDocument.h"
#include "DocumentImpl/DiText.h"

namespace vandrelle {

namespace {

constexpr int kBlock = 4096;

// From `offset` to the next newline or the end of the document.
std::string lineFrom(DcHeaderDocument* doc, long offset) {
  std::string line;
  const long total = doc->numCharacters();
  while (offset < total) {
    char block[kBlock] = {};
    const int size = static_cast<int>(std::min<long>(kBlock, total - offset));
    if (doc->characters(offset, size, block) == nullptr) break;
    const std::string_view text(block, static_cast<std::size_t>(size));
    const std::size_t newline = text.find('\n');
    line += text.substr(0, newline);
    if (newline != text.npos) break;
    offset += size;
  }
  return line;
}

}  // namespace

char* DiRunTimeHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header == nullptr || strcasecmp(header, "title") != 0) return nullptr;
  DcSourceStream definition((std::string(root_) + ".cus").c_str(), kBlock);
  DiLineReader line(definition, DiLineReader::kMaxLine);
  if (!line.next() || !line.next()) return nullptr;
  const long title = findInDocument(doc, line.view(), false, doc->numCharacters());
  return title < 0 ? nullptr : newText(lineFrom(doc, title));
}

int DiRunTimeHeaderParser::FindEndOfHeaders(std::ifstream*, long) { return 0; }

char* DiRunTimeHeaderParser::getStreamHeaders(DcHeaderDocument* doc) {
  return getHeader(doc, "title");
}

}  // namespace vandrelle
