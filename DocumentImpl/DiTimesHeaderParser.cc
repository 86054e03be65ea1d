#include "DocumentImpl/DiTimesHeaderParser.h"

#include <cstring>
#include <fstream>
#include <string>

#include "DocumentImpl/DiText.h"
#include "Tool/HeapText.h"

namespace vandrelle {

DiTimesHeaderParser::DiTimesHeaderParser(int defaultHeaders) : DiKeyWordHeaderParser(':', 0) {
  if (defaultHeaders != 0) AddStreamHeader("title", 2);
}

int DiTimesHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long docEnd) {
  const long start = thisFile->tellg();
  for (DiLineReader line(*thisFile); (docEnd == 0 || line.end() < docEnd) && line.next();) {
    if (!line.startsWith("..LD:")) continue;
    return thisFile->peek() == '.' ? -1 : static_cast<int>(line.end() - start);
  }
  return -1;
}

char* DiTimesHeaderParser::extractHeader(std::istream* stream, const char* header) {
  const HeapAptr<char> keyword(getSearchWord(header));
  if (keyword == nullptr) return nullptr;
  for (DiLineReader line(*stream); line.next();) {
    if (line.startsWith(keyword.get())) return getHeaderLines(stream);
  }
  return nullptr;
}

// The head lines end at a line with a dot that follows another, or that comes at
// once; a single one between head lines is passed over.
char* DiTimesHeaderParser::getHeaderLines(std::istream* stream) {
  std::string value;
  bool first = true;
  bool afterDot = true;
  for (DiLineReader line(*stream); line.next();) {
    if (line.startsWith(".")) {
      if (afterDot) return copyText(value);
      afterDot = true;
      continue;
    }
    if (!first) value += '/';
    first = false;
    value += line.text();
    afterDot = false;
  }
  return nullptr;
}

char* DiTimesHeaderParser::getSearchWord(const char* header) {
  return std::strcmp(header, "title") == 0 ? copyText("..HD:") : nullptr;
}

int DiTimesHeaderParser::MultiLine(const char*) { return 0; }

int DiTimesHeaderParser::stillMulti(const char*, const char*) { return 0; }

char* DiTimesHeaderParser::getMultiLine(const char*, const char*) { return nullptr; }

}  // namespace vandrelle
