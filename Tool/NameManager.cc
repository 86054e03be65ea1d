#include "Tool/NameManager.h"

#include <cstring>

#include "Tool/HeapText.h"
#include "Tool/ToolException.h"

namespace vandrelle {

NameManager::NameManager(int maxSuffix) : NameManager("", maxSuffix) {}

NameManager::NameManager(const char* prefix, int maxSuffix)
    : maxSuffix_(maxSuffix > 0 ? maxSuffix : 0) {
  base(prefix);
}

NameManager::~NameManager() { delete[] prefix_; }

void NameManager::base(const char* prefix) {
  if (prefix == nullptr) prefix = "";
  const std::size_t length = std::strlen(prefix);
  char* buffer = new char[length + static_cast<std::size_t>(maxSuffix_) + 1];
  std::memcpy(buffer, prefix, length + 1);
  delete[] prefix_;
  prefix_ = buffer;
  prefixEnd_ = buffer + length;
}

char* NameManager::suffix(const char* suf) const {
  if (suf == nullptr) suf = "";
  const std::size_t length = std::strlen(suf);
  if (length > static_cast<std::size_t>(maxSuffix_)) THROW(NameManager, "Suffix is too large");
  std::memcpy(prefixEnd_, suf, length + 1);
  return prefix_;
}

char* NameManager::copySuffix(const char* suf) const { return copyText(suffix(suf)); }

}  // namespace vandrelle
