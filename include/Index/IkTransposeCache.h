// A bounded number of digests in memory, loaded when asked for and written back
// when changed. A line can be locked against eviction while a caller holds a
// pointer into it.
#pragma once

#include <memory>
#include <vector>

#include "Fun/FdFastTable.h"

namespace vandrelle {

class IkTransposeLoader;

class IkTransposeCache {
 public:
  // `cacheSize` lines, at least one, of `digestSize` entries. `loader` isn't owned.
  IkTransposeCache(int cacheSize, int digestSize, IkTransposeLoader* loader);
  ~IkTransposeCache();  // writes changed lines back
  IkTransposeCache(const IkTransposeCache&) = delete;
  IkTransposeCache& operator=(const IkTransposeCache&) = delete;

  // The digest of a document, good until the line is evicted. A line that is
  // loaded for this call is locked if `lock` is set; one that is there already
  // stays as it is. Throws _Exception_Ik when all lines are locked.
  unsigned char* entry(int docnum, int lock);
  // Marks a document's line as changed.
  void dirty(int docnum);
  // Writes all changed lines back.
  void flush();
  bool locked(int docnum);
  void locked(int docnum, int lock);

 private:
  struct IkTransposeCacheInfo {
    int doc;
    bool valid;
    bool dirty;
    bool locked;
  };

  unsigned char* line(int number) {
    return cacheData_.data() + static_cast<std::size_t>(number) * lineBytes_;
  }
  // The line of a document, or -1.
  int find(int docnum);
  int chooseLine();

  FdFastTable addrTable_;  // document to line
  std::vector<IkTransposeCacheInfo> cacheInfo_;
  std::vector<unsigned char> cacheData_;
  std::size_t lineBytes_;
  int cacheSize_;
  int lastValid_ = 0;  // lines in use; once all are, the round-robin hand
  bool full_ = false;
  IkTransposeLoader* loader_;
};

}  // namespace vandrelle
