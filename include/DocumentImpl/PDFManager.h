// Serves the PDF files of an index, as long as their text is not read: there is
// no document for any number.
#pragma once

#include "Document/DcDocumentManager.h"

namespace vandrelle {

class DcMetaDocManager;

DESCRIPTOR_CHILD(PDFManager, DcPartialDocumentManager);

class PDFManager : public DcPartialDocumentManager {
  DESCRIBED(PDFManager)

  // Does not own `mmgr`.
  explicit PDFManager(DcMetaDocManager* mmgr) : mmgr_(mmgr) {}

  DcDocument* documentNum(int /*num*/) override { return nullptr; }

 private:
  [[maybe_unused]] DcMetaDocManager* mmgr_;
};

}  // namespace vandrelle
