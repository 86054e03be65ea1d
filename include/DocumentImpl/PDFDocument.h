// A PDF file as a document. Its text is not read: it has a number, a place in
// the file list and a field record, but no words.
#pragma once

#include <string>

#include "Document/DcDocument.h"

namespace vandrelle {

class TkLexer;
class TkStemmer;

DESCRIPTOR_CHILD(PDFDocument, DcDocument);

class PDFDocument : public DcDocument {
  DESCRIBED(PDFDocument)

  // Copies `filename`; does not own `stemmer`, which may be null.
  PDFDocument(const char* filename, TkStemmer* stemmer, int docnum);

  int documentNum() const override { return 0; }
  char* documentName() const override { return nullptr; }
  char* getTitle() { return nullptr; }

 protected:
  // Where a stream over the words of the file would be made.
  FdStream* original_words() override { return nullptr; }

 private:
  std::string filename_;
  [[maybe_unused]] int docnum_;
  [[maybe_unused]] TkStemmer* stemmer_;
  [[maybe_unused]] TkLexer* lexer_ = nullptr;
};

}  // namespace vandrelle
