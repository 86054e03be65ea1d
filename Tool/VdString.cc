#include "Tool/VdString.h"

#include <cstring>
#include <new>

namespace vandrelle {

VdString::Block* VdString::newBlock(std::size_t length) {
  auto* block = static_cast<Block*>(::operator new(sizeof(Block) + length + 1));
  block->holders = 1;
  block->text[length] = '\0';
  return block;
}

VdString::VdString(const char* text) {
  const std::size_t length = text != nullptr ? std::strlen(text) : 0;
  block_ = newBlock(length);
  if (length > 0) std::memcpy(block_->text, text, length);
}

VdString& VdString::operator=(const VdString& other) {
  ++other.block_->holders;
  release();
  block_ = other.block_;
  return *this;
}

VdString& VdString::operator+=(const char* text) {
  if (text == nullptr) return *this;
  const std::size_t length = std::strlen(block_->text);
  const std::size_t added = std::strlen(text);
  Block* joined = newBlock(length + added);
  std::memcpy(joined->text, block_->text, length);
  std::memcpy(joined->text + length, text, added);
  release();
  block_ = joined;
  return *this;
}

void VdString::release() {
  if (--block_->holders == 0) ::operator delete(block_);
}

}  // namespace vandrelle
