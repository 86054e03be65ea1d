#include "Index/IkWordTable.h"

#include "Index/IkException.h"

namespace vandrelle {

int IkWordTable::lookup(const WmWord* word, int* cookie) {
  StStoragePos position;
  const int found = lookup(word, position);
  if (found) {
    if (position.Hi() != 0) THROW(Ik, "Value to big.  Use storage API.");
    *cookie = static_cast<int>(position.Lo());
  }
  return found;
}

}  // namespace vandrelle
