// Reader of the mapped key files, kinds 14 and 16: the pointer file is used in
// place, nothing is loaded. Kind 16 maps the key file too, so that a lookup does
// no system call. Layout: KdMmapCreator.h.
#pragma once

#include "KeyFile/KdChunkAccessor.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class KdMmapAccessor final : public KdChunkAccessor {
 public:
  // `filename` is the root name. `file_type` 16 maps the key file, any other reads
  // it through `keyfile_fd`, which the accessor owns from now on unless it throws;
  // the type in the file isn't looked at. Throws _Exception_IO, as all its operations
  // do, and what SysToolsMapObject throws.
  KdMmapAccessor(const char* filename, int file_type, int keyfile_fd);
  ~KdMmapAccessor() override;

  KdStream* iterator() override;
  // Null unless the key file is mapped (an empty one never is).
  SysToolsMapObject* keyMap() override { return key_file_map_.get(); }
  SysToolsMapObject* ptrMap() override { return &ptr_file_map_; }

 private:
  [[noreturn]] void fail(const char* text, const char* detail = "",
                         const char* source = "KdMmapAccessor",
                         int line = __builtin_LINE()) override;

  void mapKeyFile(const char* path);
  void releaseMaps();

  bool bound_ = false;
  std::unique_ptr<SysToolsMapObject> key_file_map_;
  SysToolsMapObject ptr_file_map_;
};

}  // namespace vandrelle
