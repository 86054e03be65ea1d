#include "Document/DcManagerManager.h"

#include <algorithm>

#include "Document/DcDocument.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcManagerManager);

namespace {
constexpr int kGrowth = 64;
}  // namespace

DcManagerManager::DcManagerManager()
    : numDocArr_(new Pair[kGrowth]),
      mgrTable_(new DcDocumentManager* [kGrowth] {}),
      currentSize_(kGrowth) {}

DcManagerManager::~DcManagerManager() {
  delete[] numDocArr_;
  delete[] mgrTable_;
}

void DcManagerManager::increaseLen() {
  const int size = currentSize_ + kGrowth;
  Pair* ranges = new Pair[static_cast<std::size_t>(size)];
  auto** managers = new DcDocumentManager* [static_cast<std::size_t>(size)] {};
  std::copy_n(numDocArr_, numMgr_, ranges);
  std::copy_n(mgrTable_, numMgr_, managers);
  delete[] numDocArr_;
  delete[] mgrTable_;
  numDocArr_ = ranges;
  mgrTable_ = managers;
  currentSize_ = size;
}

void DcManagerManager::AddManager(DcDocumentManager* dmgr, int numdocs) {
  const int available = std::max(dmgr->numDocuments(), 0);
  if (numdocs <= 0 || numdocs >= available) numdocs = available;
  if (numMgr_ == currentSize_) increaseLen();

  lastPair_ = {previousLast_ + 1, previousLast_ + numdocs};
  lastMgr_ = dmgr;
  presentNum_ = numMgr_;
  numDocArr_[numMgr_] = lastPair_;
  mgrTable_[numMgr_] = dmgr;
  ++numMgr_;
  previousLast_ = lastPair_.last;
  numDocs_ += numdocs;
}

DcDocument* DcManagerManager::documentNum(int docNum) {
  if (docNum < 0 || docNum > previousLast_) return nullptr;
  if (!lastPair_.holds(docNum)) {
    const int following = presentNum_ + 1;
    if (docNum == lastPair_.last + 1 && following < numMgr_ &&
        numDocArr_[following].holds(docNum)) {
      presentNum_ = following;
      lastPair_ = numDocArr_[following];
      lastMgr_ = mgrTable_[following];
    } else {
      lastMgr_ = getMgr(docNum, 0, numMgr_);
    }
  }
  return lastMgr_->documentNum(docNum - lastPair_.first);
}

DcDocumentManager* DcManagerManager::getMgr(int docNum, int arrayStart, int arrayEnd) {
  int place = (arrayStart + arrayEnd) / 2;
  while (!numDocArr_[place].holds(docNum)) {
    int halved;
    if (docNum > numDocArr_[place].last) {
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
  lastPair_ = numDocArr_[place];
  presentNum_ = place;
  return mgrTable_[place];
}

DcDocument* DcManagerManager::documentName(const char* name) {
  for (int i = 0; i < numMgr_; ++i) {
    if (DcDocument* document = mgrTable_[i]->documentName(name)) return document;
  }
  return nullptr;
}

char* DcManagerManager::numToName(int docNum) {
  if (docNum < 0 || docNum > previousLast_) return nullptr;
  lastMgr_ = getMgr(docNum, 0, numMgr_);
  return lastMgr_->numToName(docNum - lastPair_.first);
}

}  // namespace vandrelle
