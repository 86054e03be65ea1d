#include "DocumentImpl/DiKeyWordHeaderParser.h"

#include <strings.h>

#include <cstring>
#include <sstream>
#include <string>

#include "Document/DcHeaderDocument.h"
#include "DocumentImpl/DiText.h"
#include "Tool/HeapText.h"

namespace vandrelle {

char* DiKeyWordHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header == nullptr || !doc->sourceAvailable()) return nullptr;
  std::istringstream stream(headerText(doc));
  return extractHeader(&stream, header);
}

char* DiKeyWordHeaderParser::extractHeader(std::istream* stream, const char* header) {
  const HeapAptr<char> keyword(getSearchWord(header));
  if (keyword == nullptr) return nullptr;
  const std::size_t length = std::strlen(keyword.get());
  const bool multi = MultiLine(keyword.get()) != 0;

  std::string value;
  bool inside = false;
  for (DiLineReader line(*stream, kLine); line.next();) {
    if (inside) {
      if (stillMulti(keyword.get(), line.text()) == 0) break;
      const HeapAptr<char> piece(getMultiLine(keyword.get(), line.text()));
      if (piece != nullptr) value += piece.get();
      continue;
    }
    const int difference = caseSensitivity_ == 1 ? strncasecmp(line.text(), keyword.get(), length)
                                                 : std::strncmp(line.text(), keyword.get(), length);
    if (difference != 0) continue;
    inside = true;
    if (line.text()[length] != '\0') value = line.text() + length + 1;
    if (!multi) break;
  }
  return inside ? copyText(value) : nullptr;
}

char* DiKeyWordHeaderParser::getSearchWord(const char* header) {
  std::string word(header);
  if (word.empty() || word.back() != headSeparator_) word += headSeparator_;
  return copyText(word);
}

int DiKeyWordHeaderParser::MultiLine(const char*) { return 0; }

int DiKeyWordHeaderParser::stillMulti(const char*, const char*) { return 0; }

char* DiKeyWordHeaderParser::getMultiLine(const char*, const char*) { return nullptr; }

}  // namespace vandrelle
