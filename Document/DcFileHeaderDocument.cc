#include "Document/DcFileHeaderDocument.h"

#include "Document/DcDocumentStream.h"
#include "Document/DcDocumentText.h"
#include "Document/DcFileDocManager.h"
#include "Document/DcMetaDocManager.h"
#include "DocumentImpl/DiHeaderParser.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcFileHeaderDocument);

DcFileHeaderDocument::DcFileHeaderDocument(std::istream* stream, TkLexer* lexer, TkStemmer* stemmer,
                                           int bufsize, int headSize, DiHeaderParser* headerParser,
                                           int start, int size, int number, DcFileDocManager* dmgr,
                                           DcMetaDocManager* mmgr)
    : stream_(stream),
      lexer_(lexer),
      stemmer_(stemmer),
      bufsize_(bufsize),
      headSize_(headSize),
      headerParser_(headerParser),
      start_(start),
      size_(size),
      number_(number),
      dmgr_(dmgr),
      mmgr_(mmgr) {}

DcFileHeaderDocument::~DcFileHeaderDocument() { dmgr_->DoneWithDoc(number_); }

char* DcFileHeaderDocument::documentName() const { return mmgr_->numToName(number_); }

char* DcFileHeaderDocument::characters(long offset_in_doc, int num_characters, char* place) {
  return readDocumentText(stream_, start_, size_, offset_in_doc, num_characters, place);
}

char* DcFileHeaderDocument::getHeader(const char* header) {
  return headerParser_ == nullptr ? nullptr : headerParser_->getHeader(this, header);
}

char* DcFileHeaderDocument::getStreamHeaders() {
  if (headerParser_ == nullptr || stream_ == nullptr) return nullptr;
  return headerParser_->getStreamHeaders(this);
}

FdStream* DcFileHeaderDocument::original_words() {
  const int policy = headerParser_ == nullptr ? 0 : headerParser_->headerPolicy();
  if (policy == 0) return new DcDocumentStream(stemmer_, lexer_, this, bufsize_);
  char* fieldsText = mmgr_->getFieldsText(number_);
  return new DcHeaderDocumentStream(stemmer_, lexer_, this, headSize_, bufsize_, fieldsText);
}

}  // namespace vandrelle
