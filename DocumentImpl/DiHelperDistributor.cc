#include "DocumentImpl/DiHelperDistributor.h"

#include "Document/DcDataType.h"
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
constexpr char kIndexedSuffix[] = ".ix";

// The numbers of the helpers; an object is made for each that a type in use names.
enum Lexer { kNoLexer, kTextLexer, kHtmlLexer, kRtfLexer, kTimesLexer };
enum HeaderParser {
  kNoHeaders,
  kNntpHeaders,
  kHtmlHeaders,
  kEmsHeaders,
  kMedLineHeaders,
  kClariHeaders,
  kCrawlerHeaders,
  kIdgHeaders,
  kEiHeaders,
  kTimesHeaders,
  kRunTimeHeaders
};
enum Separator {
  kOneArticle,
  kNntpArticles,
  kRtfPieces,
  kMedLineArticles,
  kClariArticles,
  kCrawlerPages,
  kDumpedPages = 7,
  kEiArticles,
  kTimesArticles,
  kRunTimeArticles
};
enum FileHandler { kBasicHandler, kZipHandler, kRenameHandler };

struct TypeRow {
  int type;
  DiHelperTuple helpers;
};

constexpr TypeRow kTypeRows[] = {
    {DcDataType::kText, {kTextLexer, kNoHeaders, kOneArticle, kBasicHandler}},
    {DcDataType::kHtml, {kHtmlLexer, kHtmlHeaders, kOneArticle, kBasicHandler}},
    {DcDataType::kUsenetText, {kTextLexer, kNoHeaders, kNntpArticles, kBasicHandler}},
    {DcDataType::kUsenet, {kTextLexer, kNntpHeaders, kNntpArticles, kBasicHandler}},
    {DcDataType::kRtf, {kRtfLexer, kNoHeaders, kRtfPieces, kBasicHandler}},
    {DcDataType::kEms, {kHtmlLexer, kEmsHeaders, kOneArticle, kBasicHandler}},
    {DcDataType::kMedLine, {kTextLexer, kMedLineHeaders, kMedLineArticles, kBasicHandler}},
    {DcDataType::kClari, {kTextLexer, kClariHeaders, kClariArticles, kBasicHandler}},
    {DcDataType::kIdg, {kTextLexer, kIdgHeaders, kOneArticle, kBasicHandler}},
    {DcDataType::kCrawler, {kHtmlLexer, kCrawlerHeaders, kCrawlerPages, kBasicHandler}},
    {DcDataType::kCompressedDump, {kHtmlLexer, kNoHeaders, kDumpedPages, kZipHandler}},
    {DcDataType::kEi, {kTextLexer, kEiHeaders, kEiArticles, kBasicHandler}},
    {DcDataType::kTimes, {kTimesLexer, kTimesHeaders, kTimesArticles, kBasicHandler}},
    {DcDataType::kCrawlerToo, {kHtmlLexer, kCrawlerHeaders, kCrawlerPages, kBasicHandler}},
    {DcDataType::kPdf, {kTextLexer, kRunTimeHeaders, kRunTimeArticles, kBasicHandler}},
    // Custom files; the driver gives them a type that stands beside row 15.
    {DcDataType::kCustom, {kTextLexer, kRunTimeHeaders, kRunTimeArticles, kBasicHandler}},
};

constexpr DiHelperTuple kNoHelpers;

}  // namespace

DiHelperDistributor::DiHelperDistributor(const char* root) : root_(root) { FillArray(); }

DiHelperDistributor::~DiHelperDistributor() = default;

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
  if (lexerArray_[number] == nullptr) lexerArray_[number].reset(makeLexer(number));
  return lexerArray_[number].get();
}

DiHeaderParser* DiHelperDistributor::headerParser(int type) {
  const int number = row(type).hpnum;
  if (hpArray_[number] == nullptr) hpArray_[number].reset(makeHeaderParser(number, type));
  return hpArray_[number].get();
}

DiSeparator* DiHelperDistributor::separator(int type) {
  const int number = row(type).sepnum;
  if (sepArray_[number] == nullptr) sepArray_[number].reset(makeSeparator(number, type));
  return sepArray_[number].get();
}

DiFileHandler* DiHelperDistributor::fileHandler(int type) {
  const int number = row(type).fhnum;
  if (fhArray_[number] == nullptr) fhArray_[number].reset(makeFileHandler(number));
  return fhArray_[number].get();
}

TkLexer* DiHelperDistributor::makeLexer(int number) {
  switch (number) {
    case kTextLexer:
      return TkManager::SimpleTextLexer();
    case kHtmlLexer:
      return TkManager::HtmlLexer(kIndexComments);
    case kRtfLexer:
      return TkManager::RTFLexer();
    case kTimesLexer:
      return new TkTimesLexer;
    default:
      return nullptr;
  }
}

DiHeaderParser* DiHelperDistributor::makeHeaderParser(int number, int type) {
  switch (number) {
    case kNntpHeaders:
      return new DiNntpHeaderParser(lexer(DcDataType::kUsenet), 1);
    case kHtmlHeaders:
      return new DiHtmlHeaderParser(1);
    case kEmsHeaders:
      return new DiEMSHeaderParser(1);
    case kMedLineHeaders:
      return new DiMedLineHeaderParser(1);
    case kClariHeaders:
      return new DiClariHeaderParser(lexer(type), 1);
    case kCrawlerHeaders:
      return new DiWebCrawlerHeaderParser(root_, 1);
    case kIdgHeaders:
      return new DiIDGHeaderParser(1);
    case kEiHeaders:
      return new DiEIHeaderParser(1);
    case kTimesHeaders:
      return new DiTimesHeaderParser(1);
    case kRunTimeHeaders:
      return new DiRunTimeHeaderParser(root_);
    default:
      return nullptr;
  }
}

DiSeparator* DiHelperDistributor::makeSeparator(int number, int type) {
  switch (number) {
    case kNntpArticles:
      return new DiNntpSeparator;
    case kRtfPieces:
      return new DiMediorSeparator(lexer(type), root_);
    case kMedLineArticles:
      return new DiMedLineSeparator;
    case kClariArticles:
      return new DiClariSeparator;
    case kCrawlerPages:
      return new DiDelimSeparator("NewURL---");
    case kDumpedPages:
      return new DiDelimSeparator("<DOC>");
    case kEiArticles:
      return new DiEISeparator;
    case kTimesArticles:
      return new DiTimesSeparator;
    case kRunTimeArticles:
      return new DiRunTimeSeparator(root_);
    default:
      return nullptr;
  }
}

DiFileHandler* DiHelperDistributor::makeFileHandler(int number) {
  switch (number) {
    case kZipHandler:
      return new DiZipFileHandler;
    case kRenameHandler:
      return new DiRenameFileHandler(kIndexedSuffix);
    default:
      return new DiBasicFileHandler;
  }
}

bool DiHelperDistributor::Headers(int type) const {
  return type != DcDataType::kText && type != DcDataType::kUsenetText && type != DcDataType::kRtf &&
         type != DcDataType::kCompressedDump;
}

int DiHelperDistributor::multiDocFiles(int type) const {
  return type != DcDataType::kText && type != DcDataType::kHtml && type != DcDataType::kEms &&
         type != DcDataType::kIdg;
}

}  // namespace vandrelle
