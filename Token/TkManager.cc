#include "Token.h"
#include "Token/TkHtmlLexer.h"
#include "Token/TkRTFLexer.h"
#include "Token/TkSimpleStream.h"
#include "Token/TkSimpleTextLexer.h"
#include "Token/TkStopTable.h"

namespace vandrelle {

namespace {

TkStemmerImpl* stemmerOf(const char* stem, const char* stop) {
  auto stemTable = std::make_unique<TkStemTable>(stem);
  return new TkStemmerImpl(std::move(stemTable), std::make_unique<TkStopTable>(stop));
}

}  // namespace

TkLexer* TkManager::SimpleTextLexer() { return new TkSimpleTextLexer; }

TkLexer* TkManager::HtmlLexer(int comments) { return new TkHtmlLexer(comments); }

TkLexer* TkManager::RTFLexer() { return new TkRTFLexer; }

TkTokenStream* TkManager::SimpleStream(TkStemmer* stemmer, TkLexer* lexer, std::istream* is) {
  return new TkSimpleStream(stemmer, lexer, is);
}

TkStemmer* TkManager::NullStemmer() { return new TkPassStem; }

TkStemmerImpl* TkManager::Stemmer(const char* stem, const char* stop) {
  return stemmerOf(stem, stop);
}

TkStemmerImpl* TkManager::NewStemmer(const char* stem, const char* stop) {
  return stemmerOf(stem, stop);
}

TkStemmerImpl* TkManager::BasicStemmer(const char* stem, const char* stop) {
  return stemmerOf(stem, stop != nullptr ? stop : kTkOldStopTable);
}

TkStemmerImpl* TkManager::FastStemmer(const char* stem, const char* stop) {
  return BasicStemmer(stem, stop);
}

TkStemmerImpl* TkManager::StemOnlyStemmer(const char* stem) {
  return new TkStemmerImpl(std::make_unique<TkStemTable>(stem), nullptr);
}

void TkManager::CreateStemTable(const char* source, const char* table) {
  TkStemTable::createTable(source, table);
}

void TkManager::CreateStopTable(const char* source, const char* table) {
  TkStopTable::createTable(source, table);
}

void TkManager::CreateTables(const char* stemSource, const char* stemTable, const char* stopSource,
                             const char* stopTable) {
  CreateStopTable(stopSource, stopTable);
  CreateStemTable(stemSource, stemTable);
}

}  // namespace vandrelle
