#include "DocumentImpl/DiHtmlHeaderParser.h"

#include <strings.h>

#include <algorithm>
#include <fstream>

#include "Document/DcHeaderDocument.h"
#include "DocumentImpl/DiText.h"
#include "Token/CharacterClass.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr std::string_view kTitle = "<title>";
constexpr std::string_view kBody = "<body>";
// Each line behind the title's counts this much; the scan ends above the limit.
constexpr int kLineCount = 256;
constexpr int kCountLimit = 256;
constexpr long kLargestHeader = 32768;

// Offset of the first byte from `offset` that is no white space, at most `limit`.
long skipSpace(DcHeaderDocument* doc, long offset, long limit) {
  char block[256];
  while (offset < limit) {
    const int size = static_cast<int>(std::min<long>(sizeof block, limit - offset));
    std::fill_n(block, size, '\0');
    doc->characters(offset, size, block);
    const char* text = std::find_if_not(block, block + size, character_class::isSpace);
    offset += text - block;
    if (text != block + size) break;
  }
  return offset;
}

}  // namespace

DiHtmlHeaderParser::DiHtmlHeaderParser(int defaultHeaders) {
  if (defaultHeaders != 0) AddStreamHeader("title", 1);
}

int DiHtmlHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long /*docEnd*/) {
  const long start = thisFile->tellg();
  DiPageHead head;
  DiLineReader line(*thisFile);
  for (int count = 0; !head.bodySeen() && count <= kCountLimit && line.next();) {
    if (head.titleSeen()) count += kLineCount;
    head.look(line);
  }
  if (!head.titleSeen()) {
    seekTo(*thisFile, start);
    return 0;
  }
  const long headerEnd = head.end(line.end());
  seekTo(*thisFile, headerEnd);
  return headerEnd >= kLargestHeader ? -1 : static_cast<int>(headerEnd - start);
}

char* DiHtmlHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header == nullptr || strcasecmp(header, "title") != 0) return nullptr;
  const long limit = std::min(doc->HeadSize(), doc->numCharacters());
  const long tagEnd = findInDocument(doc, kTitle, true, limit);
  if (tagEnd < 0) return nullptr;

  char title[256] = {};
  const long begin = skipSpace(doc, tagEnd, limit);
  const int size = static_cast<int>(std::min<long>(sizeof title, limit - begin));
  if (size > 0) doc->characters(begin, size, title);
  title[sizeof title - 1] = '\0';
  std::string_view text(title);
  for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1)) {
    const std::string_view tag = text.substr(at);
    if (!tag.starts_with("</") && !startsWithIgnoringCase(tag, kBody)) continue;
    text = text.substr(0, at);
    break;
  }
  return copyText(text);
}

}  // namespace vandrelle
