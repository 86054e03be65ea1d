#include "Document/DcFieldFinder.h"

#include "Document/DcHeaderDocument.h"

namespace vandrelle {

char* DcFieldFinder::getField(DcDocument* doc, const char* root, const char* field) {
  if (char* special = getSpecialField(doc, root, field)) return special;
  DcHeaderDocument* header = DESCRIPTOR_CAST(DcHeaderDocument, doc);
  return header == nullptr ? nullptr : header->getHeader(field);
}

char* DcFieldFinder::getSpecialField(DcDocument*, const char*, const char*) { return nullptr; }

}  // namespace vandrelle
