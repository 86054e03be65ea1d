// What a search result shows of a document: its title, address and summary, as
// the field database asks for them while documents are listed.
//
// A finder runs once for each document: what it needs more than once (the
// compiled expression, stemmer and lexer) it keeps.
#pragma once

#include <memory>
#include <string>

#include "Document/DcFieldFinder.h"
#include "Driver/VymFileToURLMapper.h"
#include "Tool/RegularExpression.h"

namespace vandrelle {

class DcDocument;
class TkLexer;
class TkStemmer;

// Answers from the document's own header and text. What its operations return
// is a new array that the caller owns, or null.
class VymFieldFinder : public DcFieldFinder {
 public:
  // `summaryMode` 0: no summaries; 1: the first sentences; 2: the sentences that
  // stand for the document best. At most `numSummarySentences` of them.
  VymFieldFinder(int summaryMode, int numSummarySentences);
  ~VymFieldFinder() override;
  VymFieldFinder(const VymFieldFinder&) = delete;
  VymFieldFinder& operator=(const VymFieldFinder&) = delete;

  // For the fields "title", "url" and "summary".
  char* getSpecialField(DcDocument* doc, const char* root, const char* field) override;

  // The document's name, mapped if there is a mapper.
  virtual char* getURL(DcDocument* doc);
  // The header "title", or "(Untitled)".
  virtual char* getTitle(DcDocument* doc);
  // The author's own description if the page has one, whatever the mode; else
  // what the mode makes of the first 81919 bytes, or "(No Summary)".
  virtual char* getSummary(DcDocument* doc);

  // Not owned; both may be null.
  void stemmer(TkStemmer* stemmer) { stemmer_ = stemmer; }
  void mapper(VymFileToURLMapper* mapper) { mapper_ = mapper; }
  // Where a quality summary puts its work files; null for the default. Copied.
  void sroot(const char* root);

  // The value of the description that a page declares, quotes replaced by blanks,
  // or null. `buffer` ends with a zero and stays as it is.
  virtual char* getDescription(char* buffer);

  // Makes blanks of line feeds, carriage returns, tabs and form feeds, in place.
  // Answers `buffer`, which may be null.
  virtual char* removeNewLines(char* buffer);

 private:
  // Of the page without its header; null if there is nothing to take.
  char* summarize(const char* body);
  char* qualitySummary(const char* body);
  char* firstSentences(const char* body);

  int summaryMode_;
  int numSummarySentences_;
  RegularExpression metareg_;
  TkStemmer* stemmer_ = nullptr;
  VymFileToURLMapper* mapper_ = nullptr;
  std::unique_ptr<std::string> sroot_;
  // For summaries of text; the null stemmer where there is no other.
  std::unique_ptr<TkStemmer> nullStemmer_;
  std::unique_ptr<TkLexer> textLexer_;
};

// Takes the address from the line that the spider puts in front of a page:
// protocol, host, port and path, separated by tabs, ended by a newline.
class VymSpiderFieldFinder : public VymFieldFinder {
 public:
  using VymFieldFinder::VymFieldFinder;

  // Null for a document without such a line in its first 4096 bytes.
  char* getURL(DcDocument* doc) override;
};

// New finders, owned by the caller. `sroot` is copied and may be null; mapper and
// stemmer are not owned.
DcFieldFinder* FIELD_FINDER(int summaryMode, int numSumSent, const char* sroot,
                            VymFileToURLMapper* mapper, TkStemmer* stemmer);
DcFieldFinder* SPIDER_FIELD_FINDER(int summaryMode, int numSumSent, const char* sroot,
                                   TkStemmer* stemmer);

}  // namespace vandrelle
