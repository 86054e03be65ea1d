#include "Document/DcDocument.h"

#include <cstring>

#include "Document/DcAsciiDocument.h"
#include "Document/DcDocumentSpecialWordStream.h"
#include "Document/DcDocumentUtil.h"
#include "Document/DcHeaderDocument.h"
#include "Word.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcDocument);
DEFINE_DESCRIPTOR(DcAsciiDocument);
DEFINE_DESCRIPTOR(DcHeaderDocument);

DcDocumentSpecialWordListNode::~DcDocumentSpecialWordListNode() { delete wptr; }

DcDocument::~DcDocument() {
  while (swl_ != nullptr) {
    DcDocumentSpecialWordListNode* node = swl_;
    swl_ = node->next;
    delete node;
  }
}

char* DcDocument::documentName() const { return DcDocumentUtil::intToStr(documentNum()); }

FdStream* DcDocument::words() {
  FdStream* original = original_words();
  if (swl_ == nullptr) return original;
  return new DcDocumentSpecialWordStream(swl_, original);
}

void DcDocument::addSpecialWord(const char* p) {
  void* place = ::operator new(std::strlen(p) + 1);
  swl_ = new DcDocumentSpecialWordListNode(new (place) WmWord(p, 1), swl_);
}

}  // namespace vandrelle
