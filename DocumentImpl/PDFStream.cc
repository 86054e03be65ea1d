#include "DocumentImpl/PDFStream.h"

namespace vandrelle {

PDFStream::PDFStream(TkStemmer* stemmer, TkLexer* lexer, const char* /*filename*/)
    : stem_(stemmer), lex_(lexer) {}

}  // namespace vandrelle
