// The words of a document that has special words: those first, then the text.
#pragma once

#include "Document/DcDocument.h"
#include "Fun/FdStream.h"

namespace vandrelle {

class DcDocumentSpecialWordStream : public FdStream {
 public:
  // `extra`, the list, stays the document's. Takes over `original`, which may be
  // null for a document without a text stream.
  DcDocumentSpecialWordStream(DcDocumentSpecialWordListNode* extra, FdStream* original);
  ~DcDocumentSpecialWordStream() override;

  void reset() override;
  bool more() override;
  int next() override;
  void* key() override;
  int keySize() override;
  void key(void* buffer, int* size) override;
  void* data() override;
  int dataSize() override;
  void data(void* buffer, int* size) override;
  int keyType() override;
  int dataType() override;

 private:
  DcDocumentSpecialWordListNode* extra_;
  DcDocumentSpecialWordListNode* pos_;
  FdStream* original_;
};

}  // namespace vandrelle
