#include "Index/IkIdfCreator.h"

#include "Index/IkSimilarity.h"
#include "Storage/StAppendBuffer.h"
#include "Storage/StFileStorage.h"

namespace vandrelle {

namespace {

constexpr int kBufferSize = 4096;

}  // namespace

IkIdfCreator::IkIdfCreator(const IkIndexInfo* info, const char* name) {
  IkSimilarity sim;
  sim.bind(info);
  factor_ = 255.0f / sim.idfCache[1];
  storage_ = std::make_unique<StFileStorage>(name, true);
  storage_->Initialize();
  output_ = std::make_unique<StAppendBuffer>(storage_.get(), kBufferSize);
}

IkIdfCreator::~IkIdfCreator() = default;

void IkIdfCreator::add(float idf) {
  const float scaled = idf * factor_;
  const int code = !(scaled > 0.0f) ? 0 : scaled < 255.0f ? static_cast<int>(scaled) : 255;
  output_->put(static_cast<unsigned char>(code));
}

}  // namespace vandrelle
