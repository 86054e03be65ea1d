#include "Hierarchy.h"

#include <cstring>

namespace vandrelle {

HierarchyDescriptor::~HierarchyDescriptor() = default;

bool HierarchyDescriptor::isExactly(const char* classname) const {
  return sameName(name(), classname);
}

const HierarchyDescriptor* HierarchyDescriptor::castImpl(const char* classname) const {
  return isA(classname) ? this : nullptr;
}

bool HierarchyDescriptor::sameName(const char* a, const char* b) {
  return a != nullptr && b != nullptr && std::strcmp(a, b) == 0;
}

}  // namespace vandrelle
