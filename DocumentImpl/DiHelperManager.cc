#include "DocumentImpl/DiHelperManager.h"

#include "DocumentImpl/DiHtmlHeaderParser.h"
#include "DocumentImpl/DiNntpHeaderParser.h"

namespace vandrelle {

DiHeaderParser* DiHelperManager::HtmlHeaderParser(int defaultHeaders) {
  return new DiHtmlHeaderParser(defaultHeaders);
}

DiHeaderParser* DiHelperManager::NetHeaderParser(TkLexer* lexer, int defaultHeaders) {
  return new DiNntpHeaderParser(lexer, defaultHeaders);
}

}  // namespace vandrelle
