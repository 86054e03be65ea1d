#include "Document/DcManagerManager.h"

#include <algorithm>

#include "Document/DcDocument.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcManagerManager);

namespace {
constexpr int kGrowth = 64;
}  // namespace

DcManagerManager::DcManagerManager() { increaseLen(); }

DcManagerManager::~DcManagerManager() = default;

void DcManagerManager::increaseLen() {
  currentSize_ += kGrowth;
  numDocArr_.resize(static_cast<std::size_t>(currentSize_));
  mgrTable_.resize(static_cast<std::size_t>(currentSize_));
}

void DcManagerManager::AddManager(DcDocumentManager* dmgr, int numdocs) {
  const int available = std::max(dmgr->numDocuments(), 0);
  if (numdocs <= 0 || numdocs >= available) numdocs = available;
  if (numMgr_ == currentSize_) increaseLen();

  lastPair_ = {previousLast_ + 1, previousLast_ + numdocs};
  lastMgr_ = dmgr;
  presentNum_ = numMgr_;
  range(numMgr_) = lastPair_;
  manager(numMgr_) = dmgr;
  ++numMgr_;
  previousLast_ = lastPair_.last;
  numDocs_ += numdocs;
}

DcDocument* DcManagerManager::documentNum(int docNum) {
  if (docNum < 0 || docNum > previousLast_) return nullptr;
  if (!lastPair_.holds(docNum)) {
    const int following = presentNum_ + 1;
    if (docNum == lastPair_.last + 1 && following < numMgr_ && range(following).holds(docNum)) {
      presentNum_ = following;
      lastPair_ = range(following);
      lastMgr_ = manager(following);
    } else {
      lastMgr_ = getMgr(docNum, 0, numMgr_);
    }
  }
  return lastMgr_->documentNum(docNum - lastPair_.first);
}

DcDocumentManager* DcManagerManager::getMgr(int docNum, int arrayStart, int arrayEnd) {
  int place = (arrayStart + arrayEnd) / 2;
  while (!range(place).holds(docNum)) {
    int halved;
    if (docNum > range(place).last) {
      arrayStart = place;
      halved = (place + arrayEnd) / 2;
    } else {
      arrayEnd = place;
      halved = (arrayStart + place) / 2;
    }
    // Managers without documents share a boundary with their neighbour, so a
    // halving may come to rest on one of them.
    place = halved == place ? place + 1 : halved;
  }
  lastPair_ = range(place);
  presentNum_ = place;
  return manager(place);
}

DcDocument* DcManagerManager::documentName(const char* name) {
  for (int i = 0; i < numMgr_; ++i) {
    if (DcDocument* document = manager(i)->documentName(name)) return document;
  }
  return nullptr;
}

char* DcManagerManager::numToName(int docNum) {
  if (docNum < 0 || docNum > previousLast_) return nullptr;
  lastMgr_ = getMgr(docNum, 0, numMgr_);
  return lastMgr_->numToName(docNum - lastPair_.first);
}

}  // namespace vandrelle
