// The words of a PDF file, for the day when a library that finds them is there.
// The fields are what such a stream needs: the open file, the finder of words,
// the page and the words on it. Without the library it is a stream without words.
#pragma once

#include <iosfwd>

#include "Fun/FdStream.h"

namespace vandrelle {

class TkLexer;
class TkStemmer;

// Handles of the word-finder library.
using PDDoc = struct PDDocRecord*;
using PDWordFinder = struct PDWordFinderRecord*;

class PDFStream : public FdStream {
 public:
  // Owns neither stemmer nor lexer. `filename` names the PDF file.
  PDFStream(TkStemmer* stemmer, TkLexer* lexer, const char* filename);

  void reset() override {}
  bool more() override { return false; }
  int next() override { return 0; }
  void* key() override { return nullptr; }
  int keySize() override { return 0; }
  void key(void* /*place*/, int* /*size*/) override {}

  // Would make room for the words of a larger page.
  void realloc() {}

 private:
  [[maybe_unused]] PDWordFinder wf_ = nullptr;
  [[maybe_unused]] PDDoc doc_ = nullptr;
  [[maybe_unused]] char wordPlace_[64] = {};
  [[maybe_unused]] int numPages_ = 0;
  [[maybe_unused]] int pos_ = 0;
  [[maybe_unused]] int bufSize_ = 0;
  [[maybe_unused]] int whichPage_ = 0;
  [[maybe_unused]] char* wordBuf_ = nullptr;
  [[maybe_unused]] FdStream* curStream_ = nullptr;
  [[maybe_unused]] std::istringstream* is_ = nullptr;
  [[maybe_unused]] TkStemmer* stem_;
  [[maybe_unused]] TkLexer* lex_;
  [[maybe_unused]] int valid_ = 0;
  [[maybe_unused]] int noGoodPages_ = 0;
};

}  // namespace vandrelle
