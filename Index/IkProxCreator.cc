#include "Index/IkProxCreator.h"

#include "Storage/StFileStorage.h"

namespace vandrelle {

namespace {

constexpr int kBufferSize = 4096;

}  // namespace

IkProxCreator::IkProxCreator(const char* file) {
  storage_ = std::make_unique<StFileStorage>(file, true);
  storage_->Initialize();
  buffer_ = std::make_unique<StAppendBuffer>(storage_.get(), kBufferSize);
}

IkProxCreator::~IkProxCreator() = default;

void IkProxCreator::truncate(const StStoragePos& end) {
  if (tell() == end) return;
  buffer_->flush();
  storage_->SetMaxPos(end);
}

}  // namespace vandrelle
