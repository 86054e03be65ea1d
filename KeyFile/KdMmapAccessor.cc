#include "KeyFile/KdMmapAccessor.h"

#include "KeyFile/KdMmapStream.h"
#include "Tool/NameManager.h"

namespace vandrelle {

KdMmapAccessor::KdMmapAccessor(const char* filename, int file_type, int keyfile_fd)
    : KdChunkAccessor(keyfile_fd) {
  NameManager names(filename);
  ptr_file_map_.bind(names.suffix(".ptr"));
  const auto* ptr_file = static_cast<const unsigned char*>(ptr_file_map_.addr());
  const int64_t ptr_file_size = ptr_file_map_.len();
  if (ptr_file_size < KdHeader::kBytes) fail("Error reading pointer file.");
  const KdHeader header = KdHeader::load(ptr_file);
  const int64_t table_end =
      KdHeader::kBytes + int64_t{KdPointerTable::kRecordBytes} * header.num_chunks;
  if (header.num_chunks < 0 || table_end > ptr_file_size) fail("Error reading pointer file.");
  bindTable(header, ptr_file + KdHeader::kBytes, ptr_file + table_end, ptr_file_size - table_end);
  if (file_type == kKdMapped && header.total_bytes > 0) {
    mapKeyFile(names.suffix(".key"));
    if (key_file_map_->len() < header.total_bytes) fail("Can't read buffer off disk");
    useKeyMap(static_cast<const unsigned char*>(key_file_map_->addr()));
  }
  bound_ = true;
}

KdMmapAccessor::~KdMmapAccessor() { Close_Keyfile(); }

// A throw from the constructor leaves nobody else to let the maps go.
void KdMmapAccessor::releaseMaps() {
  key_file_map_.reset();
  ptr_file_map_.release();
}

void KdMmapAccessor::mapKeyFile(const char* path) {
  key_file_map_ = std::make_unique<SysToolsMapObject>();
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    key_file_map_->bind(path);
    return;
  }
  environment.restore_env();
  releaseMaps();
  ExceptionManager::instance()->do_throw();
}

void KdMmapAccessor::fail(const char* text, const char* detail, const char* source, int line) {
  if (!bound_) releaseMaps();
  THROW_FROM(IO, source, line, text << detail);
}

KdStream* KdMmapAccessor::iterator() { return new KdMmapStream(this); }

}  // namespace vandrelle
