// How a field's value is got from a document while it is added. A plain finder
// serves what the document's header parser knows; an application derives.
#pragma once

namespace vandrelle {

class DcDocument;

class DcFieldFinder {
 public:
  virtual ~DcFieldFinder() = default;

  // A new array that the caller owns, or null.
  char* getField(DcDocument* doc, const char* root, const char* field);

  // Asked first; an answer other than null is final. Same ownership.
  virtual char* getSpecialField(DcDocument* doc, const char* root, const char* field);
};

}  // namespace vandrelle
