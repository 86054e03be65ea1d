#include "Index/QaBinder.h"

#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

bool QaBinder::exists(const char* root) {
  NameManager name(root);
  return SysTools::fileExists(name.suffix(".qa.map")) &&
         SysTools::fileExists(name.suffix(".qa.cache"));
}

void QaBinder::bind(IkLocalIndexBinder* binder, const char*, int) { binder_ = binder; }

int QaBinder::lookup(FdVector<WmMagicWord>&, FdRBTree<QaDocData>&, int) { return 0; }

}  // namespace vandrelle
