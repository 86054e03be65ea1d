// A document whose text can be read by byte offset.
#pragma once

#include "Document/DcDocument.h"

namespace vandrelle {

DESCRIPTOR_CHILD(DcAsciiDocument, DcDocument);

class DcAsciiDocument : public DcDocument {
  DESCRIBED(DcAsciiDocument)

  // Size of the text in bytes, a header included.
  virtual int numCharacters() const = 0;

  // Copies up to `num` bytes of the text from `offset` into `place`, or into a
  // new array of `num` bytes, owned by the caller, when `place` is null. Answers
  // the buffer, or null when the source is gone. What lies beyond the end of the
  // text is left as it was.
  virtual char* characters(long offset, int num, char* place) = 0;

  // Can the text be read?
  virtual bool sourceAvailable() const = 0;
};

}  // namespace vandrelle
