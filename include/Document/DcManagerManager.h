// Joins several managers, usually of several indexes, into one number space.
#pragma once

#include <vector>

#include "Document/DcDocumentManager.h"

namespace vandrelle {

DESCRIPTOR_CHILD(DcManagerManager, DcDocumentManager);

class DcManagerManager : public DcDocumentManager {
  DESCRIBED(DcManagerManager)

  DcManagerManager();
  ~DcManagerManager() override;

  // Appends the documents of `dmgr` (not owned): the first `numdocs` of them, or
  // all when `numdocs` is 0 or more than there are.
  void AddManager(DcDocumentManager* dmgr, int numdocs);

  // Null for a number that no manager has.
  DcDocument* documentNum(int docNum) override;
  DcDocument* documentName(const char* name) override;
  int numDocuments() override { return numDocs_; }
  char* numToName(int docNum) override;
  int nameToNum(const char* /*name*/) override { return -1; }

 private:
  struct Pair {
    int first = 0;
    int last = -1;
    bool holds(int docNum) const { return first <= docNum && docNum <= last; }
  };

  Pair& range(int i) { return numDocArr_[static_cast<std::size_t>(i)]; }
  DcDocumentManager*& manager(int i) { return mgrTable_[static_cast<std::size_t>(i)]; }
  void increaseLen();
  DcDocumentManager* getMgr(int docNum, int arrayStart, int arrayEnd);

  std::vector<Pair> numDocArr_;
  std::vector<DcDocumentManager*> mgrTable_;
  int numDocs_ = 0;
  int numMgr_ = 0;
  int previousLast_ = -1;
  Pair lastPair_;
  int presentNum_ = 0;
  int currentSize_ = 0;
  DcDocumentManager* lastMgr_ = nullptr;
};

}  // namespace vandrelle
