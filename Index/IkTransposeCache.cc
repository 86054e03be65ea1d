#include "Index/IkTransposeCache.h"

#include <algorithm>
#include <exception>

#include "Index/IkException.h"
#include "Index/IkTranspose.h"
#include "Index/IkTransposeLoader.h"

namespace vandrelle {

namespace {

constexpr int kRoundRobinTries = 3;

}  // namespace

IkTransposeCache::IkTransposeCache(int cacheSize, int digestSize, IkTransposeLoader* loader)
    // A table of one bucket has no bits to hash to.
    : addrTable_(std::max(cacheSize / 4, 2)),
      lineBytes_(static_cast<std::size_t>(digestSize) * IkTranspose::kEntryBytes),
      cacheSize_(std::max(cacheSize, 1)),
      loader_(loader) {
  try {
    cacheInfo_.resize(static_cast<std::size_t>(cacheSize_));
    cacheData_.resize(static_cast<std::size_t>(cacheSize_) * lineBytes_);
  } catch (const std::exception&) {
    THROW(Ik, "Can't allocate enough memory for cache");
  }
}

IkTransposeCache::~IkTransposeCache() { flush(); }

int IkTransposeCache::find(int docnum) {
  uint32 number;
  return addrTable_.find(static_cast<uint32>(docnum), &number) ? static_cast<int>(number) : -1;
}

int IkTransposeCache::chooseLine() {
  if (!full_) {
    const int free = lastValid_++;
    full_ = lastValid_ == cacheSize_;
    return free;
  }
  for (int i = 0; i < kRoundRobinTries; ++i) {
    lastValid_ = (lastValid_ + 1) % cacheSize_;
    if (!cacheInfo_[static_cast<std::size_t>(lastValid_)].locked) return lastValid_;
  }
  for (int i = 0; i < cacheSize_; ++i) {
    if (!cacheInfo_[static_cast<std::size_t>(i)].locked) return i;
  }
  THROW(Ik, "Couldn't find an unlocked line");
}

unsigned char* IkTransposeCache::entry(int docnum, int lock) {
  if (const int number = find(docnum); number >= 0) return line(number);
  const int chosen = chooseLine();
  IkTransposeCacheInfo& info = cacheInfo_[static_cast<std::size_t>(chosen)];
  if (info.valid) {
    if (info.dirty) loader_->flush(line(chosen), info.doc);
    addrTable_.remove(static_cast<uint32>(info.doc), nullptr);
  }
  // Entered when it is whole: a line that can't be loaded must not pass for a digest.
  info.valid = false;
  loader_->load(docnum, line(chosen));
  info = IkTransposeCacheInfo{docnum, true, false, lock != 0};
  addrTable_.insert(static_cast<uint32>(docnum), static_cast<uint32>(chosen));
  return line(chosen);
}

void IkTransposeCache::dirty(int docnum) {
  if (const int number = find(docnum); number >= 0) {
    cacheInfo_[static_cast<std::size_t>(number)].dirty = true;
  }
}

void IkTransposeCache::flush() {
  for (int i = 0; i < cacheSize_; ++i) {
    IkTransposeCacheInfo& info = cacheInfo_[static_cast<std::size_t>(i)];
    if (!info.valid || !info.dirty) continue;
    loader_->flush(line(i), info.doc);
    info.dirty = false;
  }
}

bool IkTransposeCache::locked(int docnum) {
  const int number = find(docnum);
  return number >= 0 && cacheInfo_[static_cast<std::size_t>(number)].locked;
}

void IkTransposeCache::locked(int docnum, int lock) {
  if (const int number = find(docnum); number >= 0) {
    cacheInfo_[static_cast<std::size_t>(number)].locked = lock != 0;
  }
}

}  // namespace vandrelle
