#include "Document/DcParagraphManager.h"

#include "Token/TkLexer.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcParagraphManager);

DcParagraphManager::DcParagraphManager(DcAsciiDocument* doc, TkStemmer* stemmer, TkLexer* lexer,
                                       int numSegments, int slideSize, int slideType) {
  initialize(stemmer, lexer, doc, nullptr, numSegments, slideSize, slideType, kParagraphEnd);
  lexer->reset();
  scanText();
}

DcParagraphManager::DcParagraphManager(const char* buf, TkStemmer* stemmer, TkLexer* lexer,
                                       int numSegments, int slideSize, int slideType) {
  initialize(stemmer, lexer, nullptr, buf, numSegments, slideSize, slideType, kParagraphEnd);
  lexer->reset();
  scanText();
}

}  // namespace vandrelle
