#include "Index/IkDataExtender.h"

#include "Index/IkException.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

IkDataExtender* IkDataExtender::Bind(const char* rootname) {
  NameManager name(rootname, 20);
  if (SysTools::fileExists(name.suffix(".xidx.xw"))) {
    THROW(Ik, "Extending an existing index is unimplemented in this version of the SDK");
  }
  return nullptr;
}

}  // namespace vandrelle
