// Makes a fresh index, under a root of its own, of an index with its deletions and
// its extension. Documents keep their numbers; the deleted ones have no terms. The
// positions of words are taken along unless documents were added, since those have
// none.
#pragma once

#include "Index/IkExtender.h"

namespace vandrelle {

class IkReintegrator : public IkExtender {
 public:
  // The roots must differ. Throws _Exception_Ik otherwise, and what IkExtender
  // throws.
  IkReintegrator(const char* oldroot, const char* newroot);

  void makeIndex() override;

 private:
  // Does the index have an extension?
  bool validExtendedFile() const;
  // What an earlier index of the new root was changed by goes, and the deletions of
  // the old root, which the header counts, come with it. Throws _Exception_IkIO.
  void takeDeletions();

  NameManager newname_;
};

}  // namespace vandrelle
