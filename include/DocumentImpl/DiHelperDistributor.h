// Binds the built-in document types to their helpers and owns these.
//
// Types that name the same number of a helper share one object; a lexer's state
// thus belongs to one stream at a time.
#pragma once

#include <memory>

#include "DocumentImpl/HelperStruct.h"

namespace vandrelle {

// A row of the type table: numbers of the helpers, 0 for none; file handler 0 is
// the basic one.
struct DiHelperTuple {
  int lexnum = 0;
  int hpnum = 0;
  int sepnum = 0;
  int fhnum = 0;
};

class DiHelperDistributor {
 public:
  static constexpr int kTypes = 64;

  // Does not copy `root`, which some of the parsers and separators need.
  explicit DiHelperDistributor(const char* root);
  ~DiHelperDistributor();
  DiHelperDistributor(const DiHelperDistributor&) = delete;
  DiHelperDistributor& operator=(const DiHelperDistributor&) = delete;

  // The helpers of a type, which stay owned here. Types from 1 to 63; any other
  // has none, and only the basic file handler.
  HelperStruct* helpers(int type);
  TkLexer* lexer(int type);
  DiHeaderParser* headerParser(int type);
  DiSeparator* separator(int type);
  DiFileHandler* fileHandler(int type);

  // Has the type headers?
  bool Headers(int type) const;
  // May a file of the type hold more than one document?
  int multiDocFiles(int type) const;

 private:
  void FillArray();
  const DiHelperTuple& row(int type) const;
  TkLexer* makeLexer(int number);
  DiHeaderParser* makeHeaderParser(int number, int type);
  DiSeparator* makeSeparator(int number, int type);
  DiFileHandler* makeFileHandler(int number);

  // Destroyed from the last to the first: parsers and separators use the lexers.
  std::unique_ptr<TkLexer> lexerArray_[kTypes];
  std::unique_ptr<DiHeaderParser> hpArray_[kTypes];
  std::unique_ptr<DiSeparator> sepArray_[kTypes];
  std::unique_ptr<DiFileHandler> fhArray_[kTypes];
  HelperStruct HelperStructArray_[kTypes];
  DiHelperTuple nameHelperArray_[kTypes];
  const char* root_;
};

}  // namespace vandrelle
