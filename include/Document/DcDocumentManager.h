// Document managers turn a document number into a live document.
#pragma once

#include "Hierarchy.h"

namespace vandrelle {

class DcDocument;

DESCRIPTOR_ROOT(DcPartialDocumentManager);

// What a sub-manager, responsible for documents of one storage form, can do.
class DcPartialDocumentManager {
  DESCRIBED_ROOT(DcPartialDocumentManager)

  DcPartialDocumentManager() = default;
  virtual ~DcPartialDocumentManager() = default;
  DcPartialDocumentManager(const DcPartialDocumentManager&) = delete;
  DcPartialDocumentManager& operator=(const DcPartialDocumentManager&) = delete;

  // A new document that the caller owns, or null for a number out of range.
  virtual DcDocument* documentNum(int num) = 0;
};

DESCRIPTOR_CHILD(DcDocumentManager, DcPartialDocumentManager);

// What a manager of a whole number space can do.
class DcDocumentManager : public DcPartialDocumentManager {
  DESCRIBED(DcDocumentManager)

  // A new document that the caller owns, or null. By default the name is taken
  // as a decimal number.
  virtual DcDocument* documentName(const char* name);

  // -1 when the manager does not know.
  virtual int numDocuments() { return -1; }

  // A new array that the caller owns, or null when there is no such document or
  // the index keeps no names.
  virtual char* numToName(int num);

  // -1 for an unknown name.
  virtual int nameToNum(const char* name);

  // Size of all documents in kilobytes; 0 when the manager does not know.
  virtual long corpusSize() { return 0; }
};

}  // namespace vandrelle
