// A read-only storage on one file that is mapped as a whole: buffers point into
// the mapping and cost nothing. It can't be made, grown or written.
#pragma once

#include "Storage/StStorage.h"
#include "Tool/SysTools.h"
#include "Tool/VdString.h"

namespace vandrelle {

class StMapStorage : public StStorage {
 public:
  StMapStorage() = default;
  explicit StMapStorage(const char* path) : root_(path) {}

  const char* root() const { return root_; }
  void root(const char* path) { root_ = path; }

  // Throw _Exception_St, and Open() what SysToolsMapObject throws. Buffers of an
  // earlier Open() end with the next.
  void Initialize() override;
  void Open(bool writable, bool create) override;
  void Flush() override {}
  StStoragePos MaxPos() override { return static_cast<uint32>(map_.len()); }
  void SetMaxPos(const StStoragePos& newMax) override;

 protected:
  void NewData(StStorageBuffer* buffer) override;
  void DeleteData(StStorageBuffer*) override {}

 private:
  VdString root_;
  SysToolsMapObject map_;
};

}  // namespace vandrelle
