// Summaries of stored documents, in the query language.
#pragma once

#include <memory>
#include <string>

#include "Parser/PrNodeCreator.h"
#include "Tool/HeapText.h"

namespace vandrelle {

class DcAsciiDocument;
class DcDocumentManager;
class IkLocalIndexBinder;
class PrArgParser;
class TkLexer;
class TkStemmer;

// (keyword docnum): prints a summary of the document, a line a sentence, on
// standard output, and makes an empty node.
//
//   n           sentences, 3 without it
//   sep         text behind each sentence
//   sroot       the directory of the work files, /tmp without it; it must lie under
//               the safe path of the index
//   sps, slide  sentences of a segment, and from one segment to the next; accepted
//               without effect, segments are single sentences
class PiHtmlSummarizeOperator : public PrNodeCreator {
 public:
  // Owns none of the four. `binder`, which may be null, has the safe path.
  // Stemmer and lexer as for PiSummarizer.
  PiHtmlSummarizeOperator(IkLocalIndexBinder* binder, DcDocumentManager* mgr, TkStemmer* stemmer,
                          TkLexer* lexer)
      : binder_(binder), mgr_(mgr), stemmer_(stemmer), lexer_(lexer) {}

  int CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args, PrParserError* perr) override;

  // The plain text of `len` bytes of a page, or of a text that ends with a zero
  // when `len` is negative; ended with a zero itself. Tags go. White space is
  // folded into single blanks, none at the start and the end. Where a block of
  // text begins or ends (a heading, an item of a list, a line break, a title)
  // the text gets a full stop unless it has one, so that block ends end
  // sentences. Entities stay as they are.
  static HeapAptr<char> Html2Ascii(const char* buf, int len);

 private:
  // The document with a number given as text; null if there is none with text.
  std::unique_ptr<DcAsciiDocument> document(const char* docnum) const;
  // The root name of the work files; empty if it is not allowed.
  std::string workRoot(const char* sroot) const;

  IkLocalIndexBinder* binder_;
  DcDocumentManager* mgr_;
  TkStemmer* stemmer_;
  TkLexer* lexer_;
  int def_sntPerSeg_ = 1;
  int def_sntSlide_ = 1;
  int def_summarySize_ = 3;
  static int unique_;  // of all operators: no two summaries share their files
};

// The same under the name that programs bind.
class PiHtmlSummarizeOperatorCout : public PiHtmlSummarizeOperator {
 public:
  using PiHtmlSummarizeOperator::PiHtmlSummarizeOperator;
};

}  // namespace vandrelle
