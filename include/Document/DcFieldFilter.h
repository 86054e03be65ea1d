// Rewrites field values on their way out of the field database.
#pragma once

namespace vandrelle {

class DcFieldFilter {
 public:
  virtual ~DcFieldFilter() = default;

  // A new array that the caller owns, or null. `text` is null for a document that has no
  // such field.
  virtual char* filterText(const char* text, const char* fieldName) = 0;
};

}  // namespace vandrelle
