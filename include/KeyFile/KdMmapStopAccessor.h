// Readers of the mapped stop-style key files, kind 15 (see KdMmapStopCreator.h).
#pragma once

#include "KeyFile/KdStopAccessor.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class KdMmapStopAccessor final : public KdStopAccessor {
 public:
  // `ptr_name` is the name of the pointer file, with its suffix. Owns `keyfile_fd`
  // from now on, unless it throws: _Exception_KdAccess, as all operations do, and
  // what SysToolsMapObject throws.
  KdMmapStopAccessor(const char* ptr_name, int keyfile_fd);

  KdStream* iterator() override;
  SysToolsMapObject* ptrMap() override { return &ptr_map_; }

 private:
  SysToolsMapObject ptr_map_;
};

class KdMmapStopStream final : public KdStopStream {
 public:
  using KdStopStream::KdStopStream;
};

}  // namespace vandrelle
