// Reads a position map (see StPosMapCreator.h) from one mapping of its file: a
// lookup costs a table access and at most interval - 1 deltas, and no system call.
#pragma once

#include "Storage/StStoragePos.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class StPosMapBinder {
 public:
  // Throws what SysToolsMapObject throws, and _Exception_St for a file whose
  // pointers do not lie inside it. The signature isn't tested.
  explicit StPosMapBinder(const char* file);

  // The position that was added for key `key` - 1; 0 for key 0. Throws
  // _Exception_St for a key whose deltas are not in the file. Keys behind the last
  // may also give a position: deltas are not counted.
  StStoragePos lookup(uint32 key) const;

 private:
  SysToolsMapObject map_;
  uint32 interval_;
  uint32 maxPointer_;
  const unsigned char* pointers_;
  const unsigned char* values_;
};

}  // namespace vandrelle
