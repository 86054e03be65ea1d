// A document over a text in memory, such as one sentence of a larger document.
#pragma once

#include "Document/DcNoHeaderDocument.h"

namespace vandrelle {

DESCRIPTOR_CHILD(DcSimpleDocument, DcNoHeaderDocument);

class DcSimpleDocument : public DcNoHeaderDocument {
  DESCRIBED(DcSimpleDocument)

  // Copies `name` (may be null: the document is then named by its number).
  // `buffer`, `size` bytes, is not copied. `origbuffer`, an array or null, is
  // taken over and freed with the document. Owns neither stemmer nor lexer.
  DcSimpleDocument(int docnum, const char* name, const char* buffer, int size, char* origbuffer,
                   TkStemmer* stemmer, TkLexer* lexer);
  ~DcSimpleDocument() override;

  int documentNum() const override { return number_; }
  char* documentName() const override;
  int numCharacters() const override { return size_; }
  // Null also when `offset` lies at or behind the end.
  char* characters(long offset, int num, char* place) override;
  bool sourceAvailable() const override { return true; }

  // The text itself, numCharacters() bytes, no terminator of its own.
  const char* buffer() const { return buffer_; }

 private:
  const char* buffer_;
  char* origbuffer_;
  int number_;
  char* name_;
  int size_;
};

}  // namespace vandrelle
