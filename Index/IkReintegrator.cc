#include "Index/IkReintegrator.h"

#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "Index/IkDataExtenderIndex.h"
#include "Index/IkException.h"
#include "Index/IkFamily.h"
#include "Index/IkMergeExtender.h"
#include "Index/IkMergeIndex.h"
#include "Index/IkMerger.h"
#include "Tool/SysTools.h"

namespace vandrelle {

IkReintegrator::IkReintegrator(const char* oldroot, const char* newroot)
    : IkExtender(oldroot), newname_(newroot) {
  if (std::strcmp(oldroot, newname_.suffix(nullptr)) == 0) {
    THROW(Ik, "An index can't be reintegrated under its own name '" << oldroot << "'");
  }
}

bool IkReintegrator::validExtendedFile() const {
  struct stat status;
  return ::stat(name_.suffix(".xidx.xw"), &status) == 0 && status.st_size > 0;
}

void IkReintegrator::takeDeletions() {
  namespace fs = std::filesystem;
  for (const char* suffix : kIkChangeSuffixes) SysTools::removeFile(newname_.suffix(suffix));
  const std::string old = name_.suffix(".xk");
  std::error_code error;
  if (fs::exists(old, error)) fs::copy_file(old, newname_.suffix(".xk"), error);
  if (error) THROW(IkIO, "Couldn't copy '" << old << "': " << error.message());
}

void IkReintegrator::makeIndex() {
  closeObjects();
  if (IkDataExtenderIndex::exists(name_.suffix(nullptr)) ||
      !SysTools::fileExists(name_.suffix(".prx"))) {
    recordProximity_ = 0;
  }
  const bool extended = validExtendedFile();
  IkMerger merger(extended ? 2 : 1);
  merger.mergeObject(0, new IkMergeIndex(name_.suffix(nullptr), nullptr, recordProximity_));
  if (extended) merger.mergeObject(1, new IkMergeExtenderIndex(name_.suffix(nullptr)));
  compileIndex(&newname_, &merger);
  takeDeletions();
  info_.write(newname_.suffix(".info"));
}

}  // namespace vandrelle
