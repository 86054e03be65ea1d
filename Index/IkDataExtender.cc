#include "Index/IkDataExtender.h"

#include "Index/IkDataExtenderIndex.h"

namespace vandrelle {

IkDataExtender* IkDataExtender::Bind(const char* rootname, int mode) {
  if (!IkDataExtenderIndex::exists(rootname)) return nullptr;
  return new IkDataExtenderIndex(rootname, mode);
}

}  // namespace vandrelle
