#include "KeyFile/KdMmapStopAccessor.h"

namespace vandrelle {

KdMmapStopAccessor::KdMmapStopAccessor(const char* ptr_name, int keyfile_fd)
    : KdStopAccessor(keyfile_fd) {
  ptr_map_.bind(ptr_name);
  const char* fault = bindTable(static_cast<const unsigned char*>(ptr_map_.addr()),
                                static_cast<std::size_t>(ptr_map_.len()));
  if (fault == nullptr) return;
  // A throw from the constructor leaves nobody else to let the map go.
  ptr_map_.release();
  THROW(KdAccess, "Pointer file is damaged: " << fault);
}

KdStream* KdMmapStopAccessor::iterator() { return new KdMmapStopStream(keyfile_fd(), &table()); }

}  // namespace vandrelle
