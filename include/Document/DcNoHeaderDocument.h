// A document that is all text: its words are those of the whole of it.
#pragma once

#include "Document/DcAsciiDocument.h"

namespace vandrelle {

class TkLexer;
class TkStemmer;

DESCRIPTOR_CHILD(DcNoHeaderDocument, DcAsciiDocument);

class DcNoHeaderDocument : public DcAsciiDocument {
  DESCRIBED(DcNoHeaderDocument)

 protected:
  // `bufsize` in bytes is the block of the word stream. Owns neither object.
  DcNoHeaderDocument(TkStemmer* stemmer, TkLexer* lexer, int bufsize)
      : stemmer_(stemmer), lexer_(lexer), bufsize_(bufsize) {}

  FdStream* original_words() override;

 private:
  TkStemmer* stemmer_;
  TkLexer* lexer_;
  int bufsize_;
};

}  // namespace vandrelle
