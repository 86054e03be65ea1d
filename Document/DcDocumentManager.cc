#include "Document/DcDocumentManager.h"

#include <cstdlib>
#include <memory>

#include "Document/DcDocument.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcPartialDocumentManager);
DEFINE_DESCRIPTOR(DcDocumentManager);

DcDocument* DcDocumentManager::documentName(const char* name) {
  return documentNum(std::atoi(name));
}

char* DcDocumentManager::numToName(int num) {
  const std::unique_ptr<DcDocument> document(documentNum(num));
  return document == nullptr ? nullptr : document->documentName();
}

int DcDocumentManager::nameToNum(const char* name) {
  const std::unique_ptr<DcDocument> document(documentName(name));
  return document == nullptr ? -1 : document->documentNum();
}

}  // namespace vandrelle
