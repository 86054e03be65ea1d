// Reads the row data file of an index (see IkDataFile.h): seek to a row that the
// word table names, or walk all with next(), and unpack. Bytes of rows are used
// where they were read or mapped.
#pragma once

#include <cstdint>
#include <memory>

#include "Index/IkDataExtender.h"
#include "Index/IkDataFile.h"
#include "Index/IkDataFileUnpacker.h"
#include "Index/IkDeleter.h"
#include "Storage/StStorage.h"
#include "Storage/StStorageHandle.h"
#include "Storage/StStoragePos.h"

namespace vandrelle {

// The packed pairs of one row, which stay good while this lives and the binder's
// storage does.
class IkDataRowBuffer {
 public:
  IkDataRowBuffer(const unsigned char* data, const StBuffer& buffer)
      : data_(data), buffer_(buffer) {}
  const unsigned char* data() const { return data_; }

 private:
  const unsigned char* data_;
  StBuffer buffer_;
};

class IkDataFileBinder {
 public:
  IkDataFileBinder() = default;
  ~IkDataFileBinder();
  IkDataFileBinder(const IkDataFileBinder&) = delete;
  IkDataFileBinder& operator=(const IkDataFileBinder&) = delete;

  // Opens <root>.dat and stands on its first row. `mode` 0 is for reading, else
  // headers may be changed; `mmap` maps the file as one. Takes the index's
  // deletions and extension along. Throws _Exception_St for a missing file.
  void bind(const char* rootname, int mode, int mmap);
  void mmap(const char* rootname) { bind(rootname, 0, 1); }
  // The same for a file of rows by its own name, without deletions and extension.
  void bindFile(const char* filename, int mode, int mmap);

  // Stands on the row at a position. A position past the end changes nothing.
  // A file that ends within the row's header throws _Exception_Ik.
  void seek(const StStoragePos& position);
  void seek(uint32 position) { seek(StStoragePos(position)); }
  StStoragePos tell() const { return offset_; }
  // The position as 32 bits. Throws _Exception_Ik when it has more.
  uint32 offset() const;

  bool more() const { return offset_ < filesize_; }
  void next();

  // Of the current row: bytes of its packed pairs, bytes in the file, its flag.
  uint32 dataSize() const { return row_.dataSize(); }
  uint32 linesize() const { return row_.linesize(); }
  bool extendedData() const { return row_.extendedData(); }

  // The idf in the row's header, 0 past the end.
  float scale() const { return more() ? row_.scale : 0.0f; }
  // Replaces it in memory. Throws _Exception_Ik when bound for reading.
  void scale(float value);
  // Sets the flag in memory.
  void setExtendedData() { row_.flags |= IkDataFileFormat::kExtended; }
  // Writes the current row's header, as it is in memory, to the file.
  void storeHeader();

  // The packed pairs, dataSize() bytes; loadRow() first. A row that is longer
  // than its file throws _Exception_Ik in loadRow().
  void loadRow();
  const unsigned char* rowData() const { return rowdata_; }
  // The same handed out: the binder forgets them. The caller owns the result.
  IkDataRowBuffer* rowBuffer();

  // Calls the functor for each pair of a live document. Nothing past the end.
  void unpackRow(IkDataFileUnpacker* functor);
  // The same with another scale than the stored one; throws _Exception_Ik past
  // the end.
  void rawUnpackRow(IkDataFileUnpacker* functor, float scale);
  // The decoder alone, with `action(doc_num, doc_freq)` inlined: without
  // structure map and extension. unpackPairs() drops deleted documents,
  // unpackAllPairs() keeps them.
  template <typename Action>
  void unpackPairs(Action&& action);
  template <typename Action>
  void unpackAllPairs(Action&& action);

  // The binder owns its deleter, and destroys the old one.
  IkDeleter* deleter() const { return deleter_.get(); }
  void deleter(IkDeleter* deleter);
  // Owned; null for an index that was never extended.
  IkDataExtender* extender() const { return extender_.get(); }
  void extender(IkDataExtender* extender);
  // Not owned.
  void structureMap(DcStructureMap* map) { structureMap_ = map; }

  [[noreturn]] void updateInfo();

 private:
  void initExtenderDeleter(const char* rootname);
  void loadHeader();
  bool holds(std::uint64_t length) const;
  void load(std::uint64_t length);

  int mode_ = 0;
  std::unique_ptr<StStorage> storage_;
  IkDataFileFormat row_;
  const unsigned char* rowdata_ = nullptr;
  StStorageHandle rowdataBuffer_;  // a stretch of the file around the row
  StStoragePos offset_;
  StStoragePos lastOffset_;  // end of that stretch
  StStoragePos filesize_;
  std::unique_ptr<IkDataExtender> extender_;
  std::unique_ptr<IkDeleter> deleter_;
  DcStructureMap* structureMap_ = nullptr;
};

template <typename Action>
void IkDataFileBinder::unpackAllPairs(Action&& action) {
  if (!more()) return;
  loadRow();
  IkDataFile::unpackPairs(rowdata_, static_cast<int>(dataSize()), action);
}

template <typename Action>
void IkDataFileBinder::unpackPairs(Action&& action) {
  IkDeleter* const deleter = deleter_.get();
  if (deleter == nullptr) {
    unpackAllPairs(action);
  } else {
    unpackAllPairs([&](int docNum, int frequency) {
      if (!deleter->isDeleted(docNum)) action(docNum, frequency);
    });
  }
}

}  // namespace vandrelle
