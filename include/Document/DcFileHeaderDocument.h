// A document in a file, or one article of a file, as the managers hand it out
// for indexing and reading.
#pragma once

#include <iosfwd>

#include "Document/DcHeaderDocument.h"

namespace vandrelle {

class DcFileDocManager;
class DcMetaDocManager;
class DiHeaderParser;
class TkLexer;
class TkStemmer;

DESCRIPTOR_CHILD(DcFileHeaderDocument, DcHeaderDocument);

class DcFileHeaderDocument : public DcHeaderDocument {
  DESCRIBED(DcFileHeaderDocument)

  // `stream` is null when the source is gone, `headerParser` when the type has
  // none. `bufsize`: block of the word stream in bytes. `start` and `size`: where
  // the document lies in its file, in bytes, the `headSize` bytes of header
  // included. `number`: in the whole index. Owns none of the objects; `dmgr` is
  // told when the document dies, `mmgr` serves its name and field text.
  DcFileHeaderDocument(std::istream* stream, TkLexer* lexer, TkStemmer* stemmer, int bufsize,
                       int headSize, DiHeaderParser* headerParser, int start, int size, int number,
                       DcFileDocManager* dmgr, DcMetaDocManager* mmgr);
  ~DcFileHeaderDocument() override;

  int documentNum() const override { return number_; }
  char* documentName() const override;
  int numCharacters() const override { return size_; }
  char* characters(long offset_in_doc, int num_characters, char* place) override;
  bool sourceAvailable() const override { return stream_ != nullptr; }
  int HeadSize() const override { return headSize_; }
  char* getHeader(const char* header) override;

  // The header text to index, a new array that the caller owns, or null.
  char* getStreamHeaders();

 protected:
  FdStream* original_words() override;

 private:
  std::istream* stream_;
  TkLexer* lexer_;
  TkStemmer* stemmer_;
  int bufsize_;
  int headSize_;
  DiHeaderParser* headerParser_;
  int start_;
  int size_;
  int number_;
  DcFileDocManager* dmgr_;
  DcMetaDocManager* mmgr_;
};

}  // namespace vandrelle
