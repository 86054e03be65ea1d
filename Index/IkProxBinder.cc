#include "Index/IkProxBinder.h"

#include "Storage/StFileStorage.h"

namespace vandrelle {

namespace {

constexpr int kBufferSize = 8192;

}  // namespace

IkProxBinder::IkProxBinder(const char* file) : name_(file) {
  storage_ = std::make_unique<StFileStorage>(file, true);
  storage_->Open(false, false);
  buffer_ = std::make_unique<StInputBuffer>(storage_.get(), kBufferSize, false);
}

IkProxBinder::~IkProxBinder() = default;

StPosMapBinder* IkProxBinder::map() {
  if (map_ == nullptr) map_ = std::make_unique<StPosMapBinder>(name_.suffix(".map"));
  return map_.get();
}

IkProxBuffer* IkProxBinder::getBuffer(uint32 word) {
  const StStoragePos start = map()->lookup(word);
  const StStoragePos end = map()->lookup(word + 1);
  if (end < start || storage_->MaxPos() < end || (end - start).Hi() != 0) {
    THROW(Ik, "The positions of word " << word << " are outside of their file");
  }
  return new IkProxBuffer(start, (end - start).Lo(), storage_.get());
}

}  // namespace vandrelle
