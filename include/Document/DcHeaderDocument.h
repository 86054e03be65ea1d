// A document that begins with a header from which named values can be taken.
#pragma once

#include "Document/DcAsciiDocument.h"

namespace vandrelle {

DESCRIPTOR_CHILD(DcHeaderDocument, DcAsciiDocument);

class DcHeaderDocument : public DcAsciiDocument {
  DESCRIBED(DcHeaderDocument)

  // Bytes of header at the start of the document. 0 without a header; it may be
  // negative when the size was never found out.
  virtual int HeadSize() const = 0;

  // Value of the named header as a new array, owned by the caller, or null.
  virtual char* getHeader(const char* header) = 0;
};

}  // namespace vandrelle
