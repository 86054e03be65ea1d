// Reads the stored fields of an index.
#pragma once

#include "Tool/HeapText.h"

namespace vandrelle {

// One field as the binder hands it out.
struct DcFieldInfo {
  HeapAptr<char> name;
  HeapAptr<char> value;
};

class DcFieldsBinder {
 public:
  explicit DcFieldsBinder(const char* root);
  ~DcFieldsBinder();
  DcFieldsBinder(const DcFieldsBinder&) = delete;
  DcFieldsBinder& operator=(const DcFieldsBinder&) = delete;

  bool valid() const { return valid_; }
  int numDocuments() const { return numDocuments_; }

  // Chooses the document of which getField() is to speak. False when there is
  // none of that number.
  bool gotoDoc(int num);

  // The next field of that document; false at the end.
  bool getField(DcFieldInfo& field);

 private:
  int numDocuments_ = 0;
  bool valid_ = false;
};

}  // namespace vandrelle
