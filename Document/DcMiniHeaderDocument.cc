#include "Document/DcMiniHeaderDocument.h"

#include "Document/DcDocumentText.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "Tool/HeapText.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcMiniHeaderDocument);

DcMiniHeaderDocument::DcMiniHeaderDocument(DiHeaderParser* hp, std::istream* stream, int start,
                                           int docSize, int headSize, int document_num,
                                           const char* document_name)
    : stream_(stream),
      headSize_(headSize),
      headerParser_(hp),
      size_(docSize),
      start_(start),
      number_(document_num),
      name_(document_name) {}

char* DcMiniHeaderDocument::documentName() const { return copyText(name_); }

char* DcMiniHeaderDocument::characters(long offset_in_doc, int num_characters, char* place) {
  return readDocumentText(stream_, start_, size_, offset_in_doc, num_characters, place);
}

char* DcMiniHeaderDocument::getHeader(const char* header) {
  return headerParser_ == nullptr ? nullptr : headerParser_->getHeader(this, header);
}

char* DcMiniHeaderDocument::getStreamHeaders() {
  if (headerParser_ == nullptr || stream_ == nullptr) return nullptr;
  return headerParser_->getStreamHeaders(this);
}

FdStream* DcMiniHeaderDocument::original_words() { return nullptr; }

}  // namespace vandrelle
