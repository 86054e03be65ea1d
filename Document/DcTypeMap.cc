#include "Document/DcTypeMap.h"

#include <cstring>

#include "Document/DcDataType.h"
#include "Fun/Fd.h"
#include "Tool/RegularExpression.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

DcRegexpTypeMap::DcRegexpTypeMap() : typeTable_(Fd::Queue()) {}

DcRegexpTypeMap::~DcRegexpTypeMap() {
  for (startWalk(); iter_->more(); iter_->next()) delete currentRule().expression;
}

void DcRegexpTypeMap::addDataType(const char* regexp, int type, char binFlag) {
  // The walk would not see the end of a list that grows under it.
  iter_.reset();
  if (binFlag != 0 && tester_ == nullptr) tester_ = std::make_unique<DcBintest>();
  const DcDataTypeRecord rule = {type, new RegularExpression(regexp), binFlag};
  typeTable_->insert(regexp, static_cast<int>(std::strlen(regexp)) + 1, &rule, sizeof rule);
}

void DcRegexpTypeMap::excludeBadEndings() {
  for (const char* ending : {"\\.o$", "\\.a$", "\\.gif$", "\\.au$", "\\.jpeg$", "\\.jpg$",
                             "\\.mpeg$", "\\.mpg$", "\\.mov$"}) {
    excludeRegExp(ending);
  }
}

void DcRegexpTypeMap::DoneWithDataTypes() { startWalk(); }

void DcRegexpTypeMap::startWalk() {
  if (iter_ == nullptr) iter_.reset(typeTable_->iterator());
  iter_->reset();
}

DcDataTypeRecord DcRegexpTypeMap::currentRule() const {
  DcDataTypeRecord rule;
  int size = sizeof rule;
  iter_->data(&rule, &size);  // by copy: the bag's blocks are not aligned for a pointer
  return rule;
}

void DcRegexpTypeMap::logExclusion(const char* path) const {
  LOG(2, 1, path << " matches regexp " << static_cast<const char*>(iter_->key()) << " - Excluded.");
}

int DcRegexpTypeMap::fileToType(const char* filename) {
  for (startWalk(); iter_->more(); iter_->next()) {
    const DcDataTypeRecord rule = currentRule();
    if (!rule.expression->matches(filename)) continue;
    if (rule.binFlag != 0 && tester_->isBin(filename)) {
      LOG(0, 1, filename << " is binary.  Skipped.");
      return 0;
    }
    if (rule.dataType == DcDataType::kExcluded) logExclusion(filename);
    return rule.dataType;
  }
  return 0;
}

int DcRegexpTypeMap::excludeDir(const char* dirname) {
  for (startWalk(); iter_->more(); iter_->next()) {
    const DcDataTypeRecord rule = currentRule();
    if (rule.dataType != DcDataType::kExcluded || !rule.expression->matches(dirname)) continue;
    logExclusion(dirname);
    return 1;
  }
  return 0;
}

}  // namespace vandrelle
