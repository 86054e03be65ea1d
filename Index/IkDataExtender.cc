#include "Index/IkDataExtender.h"

#include <sys/stat.h>

#include "Index/IkException.h"
#include "Tool/NameManager.h"

namespace vandrelle {

IkDataExtender* IkDataExtender::Bind(const char* rootname) {
  const NameManager name(rootname, 20);
  struct stat status;
  if (::stat(name.suffix(".xidx.xw"), &status) == 0 && status.st_size > 0) {
    THROW(Ik, "Extending an existing index is unimplemented in this version of the SDK");
  }
  return nullptr;
}

}  // namespace vandrelle
