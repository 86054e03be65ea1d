#include "DocumentImpl/DiHelperDistributor.h"

#include "DocumentImpl/DiBasicFileHandler.h"
#include "DocumentImpl/DiClariSeparator.h"
#include "DocumentImpl/DiDelimSeparator.h"
#include "DocumentImpl/DiEMSHeaderParser.h"
#include "DocumentImpl/DiHtmlHeaderParser.h"
#include "DocumentImpl/DiMedLineHeaderParser.h"
#include "DocumentImpl/DiMediorSeparator.h"
#include "DocumentImpl/DiNntpHeaderParser.h"
#include "DocumentImpl/DiRenameFileHandler.h"
#include "DocumentImpl/DiRunTimeHeaderParser.h"
#include "DocumentImpl/DiTimesHeaderParser.h"
#include "DocumentImpl/DiTimesSeparator.h"
#include "DocumentImpl/DiWebCrawlerHeaderParser.h"
#include "DocumentImpl/DiZipFileHandler.h"
#include "Token.h"
#include "Token/TkLexer.h"
#include "Token/TkTimesLexer.h"

namespace vandrelle {

namespace {

constexpr int kIndexComments = 0;
// The type whose lexer finds the paragraphs of Usenet articles.
constexpr int kNntpType = 4;
constexpr char kIndexedSuffix[] = ".ix";

struct TypeRow {
  int type;
  DiHelperTuple helpers;
};

// Type, then the numbers of lexer, header parser, separator and file handler.
constexpr TypeRow kTypeRows[] = {
    {1, {1, 0, 0, 0}},
    {2, {2, 2, 0, 0}},
    {3, {1, 0, 1, 0}},
    {4, {1, 1, 1, 0}},
    {5, {3, 0, 2, 0}},
    {6, {2, 3, 0, 0}},
    {7, {1, 4, 3, 0}},
    {8, {1, 5, 4, 0}},
    {9, {1, 7, 0, 0}},
    {10, {2, 6, 5, 0}},
    {11, {2, 0, 7, 1}},
    {12, {1, 8, 8, 0}},
    {13, {4, 9, 9, 0}},
    {14, {2, 6, 5, 0}},
    {15, {1, 10, 10, 0}},
    // Custom files; the driver gives them a type that stands beside row 15.
    {16, {1, 10, 10, 0}},
};

constexpr DiHelperTuple kNoHelpers;

template <typename Helper, std::size_t Size>
void deleteAll(Helper* (&helpers)[Size]) {
  for (Helper* helper : helpers) delete helper;
}

}  // namespace

DiHelperDistributor::DiHelperDistributor(const char* root) : root_(root) { FillArray(); }

DiHelperDistributor::~DiHelperDistributor() {
  // Parsers and separators before the lexers that they use.
  deleteAll(hpArray_);
  deleteAll(sepArray_);
  deleteAll(fhArray_);
  deleteAll(lexerArray_);
}

void DiHelperDistributor::FillArray() {
  for (const TypeRow& typeRow : kTypeRows) nameHelperArray_[typeRow.type] = typeRow.helpers;
}

const DiHelperTuple& DiHelperDistributor::row(int type) const {
  return 0 <= type && type < kTypes ? nameHelperArray_[type] : kNoHelpers;
}

HelperStruct* DiHelperDistributor::helpers(int type) {
  HelperStruct* entry = &HelperStructArray_[0 <= type && type < kTypes ? type : 0];
  if (entry->lexer == nullptr) {
    entry->lexer = lexer(type);
    entry->headerParser = headerParser(type);
    entry->separator = separator(type);
    entry->handler = fileHandler(type);
  }
  return entry;
}

TkLexer* DiHelperDistributor::lexer(int type) {
  const int number = row(type).lexnum;
  if (number != 0 && lexerArray_[number] == nullptr) lexerArray_[number] = makeLexer(number);
  return lexerArray_[number];
}

DiHeaderParser* DiHelperDistributor::headerParser(int type) {
  const int number = row(type).hpnum;
  if (number != 0 && hpArray_[number] == nullptr) {
    hpArray_[number] = makeHeaderParser(number, type);
  }
  return hpArray_[number];
}

DiSeparator* DiHelperDistributor::separator(int type) {
  const int number = row(type).sepnum;
  if (number != 0 && sepArray_[number] == nullptr) sepArray_[number] = makeSeparator(number, type);
  return sepArray_[number];
}

DiFileHandler* DiHelperDistributor::fileHandler(int type) {
  const int number = row(type).fhnum;
  if (fhArray_[number] == nullptr) fhArray_[number] = makeFileHandler(number);
  return fhArray_[number];
}

TkLexer* DiHelperDistributor::makeLexer(int number) {
  switch (number) {
    case 1:
      return TkManager::SimpleTextLexer();
    case 2:
      return TkManager::HtmlLexer(kIndexComments);
    case 3:
      return TkManager::RTFLexer();
    case 4:
      return new TkTimesLexer;
    default:
      return nullptr;
  }
}

DiHeaderParser* DiHelperDistributor::makeHeaderParser(int number, int type) {
  switch (number) {
    case 1:
      return new DiNntpHeaderParser(lexer(kNntpType), 1);
    case 2:
      return new DiHtmlHeaderParser(1);
    case 3:
      return new DiEMSHeaderParser(1);
    case 4:
      return new DiMedLineHeaderParser(1);
    case 5:
      return new DiClariHeaderParser(lexer(type), 1);
    case 6:
      return new DiWebCrawlerHeaderParser(root_, 1);
    case 7:
      return new DiIDGHeaderParser(1);
    case 8:
      return new DiEIHeaderParser(1);
    case 9:
      return new DiTimesHeaderParser(1);
    case 10:
      return new DiRunTimeHeaderParser(root_);
    default:
      return nullptr;
  }
}

DiSeparator* DiHelperDistributor::makeSeparator(int number, int type) {
  switch (number) {
    case 1:
      return new DiNntpSeparator;
    case 2:
      return new DiMediorSeparator(lexer(type), root_);
    case 3:
      return new DiMedLineSeparator;
    case 4:
      return new DiClariSeparator;
    case 5:
      return new DiDelimSeparator("NewURL---");
    case 7:
      return new DiDelimSeparator("<DOC>");
    case 8:
      return new DiEISeparator;
    case 9:
      return new DiTimesSeparator;
    case 10:
      return new DiRunTimeSeparator(root_);
    default:
      return nullptr;
  }
}

DiFileHandler* DiHelperDistributor::makeFileHandler(int number) {
  switch (number) {
    case 1:
      return new DiZipFileHandler;
    case 2:
      return new DiRenameFileHandler(kIndexedSuffix);
    default:
      return new DiBasicFileHandler;
  }
}

bool DiHelperDistributor::Headers(int type) const {
  return type != 1 && type != 3 && type != 5 && type != 11;
}

int DiHelperDistributor::multiDocFiles(int type) const {
  return type == 1 || type == 2 || type == 6 || type == 9 ? 0 : 1;
}

}  // namespace vandrelle
