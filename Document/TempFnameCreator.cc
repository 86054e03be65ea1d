#include "Document/TempFnameCreator.h"

#include <string>

#include "Tool/HeapText.h"
#include "Tool/SysTools.h"

namespace vandrelle {

TempFnameCreator::TempFnameCreator(const char* root) : root_(root), owned_(false) {}

TempFnameCreator::TempFnameCreator(char* root, ownership how)
    : root_(how == copy ? copyText(root) : root), owned_(how != reference) {}

TempFnameCreator::~TempFnameCreator() {
  if (owned_) delete[] root_;
}

char* TempFnameCreator::fname() {
  for (;;) {
    const std::string suffix = "." + std::to_string(counter_);
    if (suffix.size() > kMaxSuffix) return nullptr;
    ++counter_;
    const std::string name = root_ + suffix;
    if (!SysTools::fileExists(name.c_str())) return copyText(name.c_str());
  }
}

}  // namespace vandrelle
