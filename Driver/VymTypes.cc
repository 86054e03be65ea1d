#include "Driver/VymTypes.h"

#include "DocumentImpl/DiFileHandler.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "DocumentImpl/DiHelperManager.h"
#include "Token.h"
#include "Token/TkLexer.h"

namespace vandrelle {

VymTypes::VymTypes(const char* /*root*/, int comments)
    : lexer_(TkManager::HtmlLexer(comments)),
      headerParser_(DiHelperManager::HtmlHeaderParser(1)),
      handler_(BasicFileHandler()),
      helpers_{lexer_.get(), headerParser_.get(), nullptr, handler_.get()} {}

VymTypes::~VymTypes() = default;

}  // namespace vandrelle
