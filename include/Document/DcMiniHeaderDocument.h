// The light form of a file document that exists while documents are being
// added, before there is a manager. It can be asked for its text and headers but
// never indexed.
#pragma once

#include <iosfwd>

#include "Document/DcHeaderDocument.h"

namespace vandrelle {

class DiHeaderParser;

DESCRIPTOR_CHILD(DcMiniHeaderDocument, DcHeaderDocument);

class DcMiniHeaderDocument : public DcHeaderDocument {
  DESCRIBED(DcMiniHeaderDocument)

  // `hp` and `stream` may be null and are not owned; `document_name` is neither
  // copied nor freed. `start`, `docSize` and `headSize` in bytes.
  DcMiniHeaderDocument(DiHeaderParser* hp, std::istream* stream, int start, int docSize,
                       int headSize, int document_num, const char* document_name);

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
  FdStream* original_words() override;  // null

 private:
  std::istream* stream_;
  int headSize_;
  DiHeaderParser* headerParser_;
  int size_;
  int start_;
  int number_;
  const char* name_;
};

}  // namespace vandrelle
