#include "Driver/VymTypes.h"

#include "DocumentImpl/DiFileHandler.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "DocumentImpl/DiHelperManager.h"
#include "Token.h"
#include "Token/TkLexer.h"

namespace vandrelle {

VymTypes::VymTypes(const char* /*root*/, int comments) : helpers_(new HelperStruct) {
  helpers_->lexer = TkManager::HtmlLexer(comments);
  helpers_->headerParser = DiHelperManager::HtmlHeaderParser(1);
  helpers_->handler = BasicFileHandler();
}

VymTypes::~VymTypes() {
  delete helpers_->lexer;
  delete helpers_->headerParser;
  delete helpers_->handler;
  delete helpers_;
}

}  // namespace vandrelle
