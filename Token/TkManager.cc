#include "Token.h"
#include "Token/TkHtmlLexer.h"
#include "Token/TkRTFLexer.h"
#include "Token/TkSimpleStream.h"
#include "Token/TkSimpleTextLexer.h"

namespace vandrelle {

TkLexer* TkManager::SimpleTextLexer() { return new TkSimpleTextLexer; }

TkLexer* TkManager::HtmlLexer(int comments) { return new TkHtmlLexer(comments); }

TkLexer* TkManager::RTFLexer() { return new TkRTFLexer; }

TkTokenStream* TkManager::SimpleStream(TkStemmer* stemmer, TkLexer* lexer, std::istream* is) {
  return new TkSimpleStream(stemmer, lexer, is);
}

TkStemmer* TkManager::NullStemmer() { return new TkPassStem; }

TkStemmerImpl* TkManager::StemOnlyStemmer(const char* stem) {
  return new TkStemmerImpl(std::make_unique<TkStemTable>(stem), nullptr);
}

void TkManager::CreateStemTable(const char* source, const char* table) {
  TkStemTable::createTable(source, table);
}

}  // namespace vandrelle
