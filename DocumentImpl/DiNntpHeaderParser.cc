#include "DocumentImpl/DiNntpHeaderParser.h"

#include <strings.h>

#include <fstream>

#include "DocumentImpl/DiText.h"
#include "Token/TkLexer.h"

namespace vandrelle {

namespace {
constexpr int kClariLine = 128;
}  // namespace

DiNntpHeaderParser::DiNntpHeaderParser(TkLexer* lexer, int defaultHeaders)
    : DiKeyWordHeaderParser(':', 1), lexer_(lexer) {
  if (defaultHeaders != 0) AddStreamHeader("subject", 2);
}

char* DiNntpHeaderParser::getHeader(DcHeaderDocument* doc, const char* header) {
  if (header != nullptr && strcasecmp(header, "title") == 0) header = "subject";
  return DiKeyWordHeaderParser::getHeader(doc, header);
}

int DiNntpHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long docEnd) {
  if (lexer_ == nullptr) return 0;
  const long start = thisFile->tellg();
  long position = start;
  int size = -1;
  for (;;) {
    // An article that ends with the file in the midst of its header has no text;
    // one that others follow is all text.
    const bool atEnd = docEnd != 0 && position >= docEnd;
    const int c = atEnd ? thisFile->peek() : thisFile->get();
    if (c == std::char_traits<char>::eof()) break;
    if (atEnd) {
      size = 0;
      break;
    }
    ++position;
    lexer_->nextCharacter(static_cast<char>(c));
    if ((lexer_->flags() & kParagraphEnd) != 0) {
      size = static_cast<int>(position - start);
      break;
    }
  }
  lexer_->reset();
  return size;
}

int DiClariHeaderParser::FindEndOfHeaders(std::ifstream* thisFile, long docEnd) {
  const int size = DiNntpHeaderParser::FindEndOfHeaders(thisFile, docEnd);
  if (size < 0) return size;
  const long textStart = thisFile->tellg();
  *thisFile >> std::ws;
  DiLineReader line(*thisFile, kClariLine);
  if (line.next() && (line.view().find("GIF") != std::string_view::npos ||
                      line.view().find("#! rnews") != std::string_view::npos)) {
    return -1;
  }
  seekTo(*thisFile, textStart);
  return size;
}

}  // namespace vandrelle
