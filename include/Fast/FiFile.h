// A small file of blocks: stretches of it are handed out as counted segments,
// and a segment of a writable file is written back when its last reference goes.
// A file can be mapped instead for reading; then segments point into the map.
//
// Failures throw _Exception_Fatal. The release of a segment is among what may throw,
// so that one that is being written dies in no library container: assign an empty
// one to it first.
#pragma once

#include <memory>

#include "Tool/SysTools.h"

namespace vandrelle {

class FiFile;

// A heap copy of one stretch of a file.
struct FiFileTableEntry {
  std::unique_ptr<char[]> data_;
  int refcount_;
  int writercount_;  // -1: read-only
  int offset_;       // position in the file
  int size_;         // bytes
  FiFile* mgr_;
};

class FiFileSegment {
 public:
  FiFileSegment() = default;
  FiFileSegment(const FiFileSegment& other);
  FiFileSegment& operator=(const FiFileSegment& other);
  ~FiFileSegment() { release(); }

  unsigned char* data() const { return static_cast<unsigned char*>(data_); }
  int size() const { return size_; }
  bool valid() const { return data_ != nullptr; }

 private:
  friend class FiFile;
  FiFileSegment(void* data, int size, FiFileTableEntry* fte)
      : data_(data), size_(size), fte_(fte) {}
  void attach(const FiFileSegment& other);
  void release();

  void* data_ = nullptr;
  int size_ = 0;
  FiFileTableEntry* fte_ = nullptr;  // null: straight into a mapped file
};

class FiFile {
 public:
  using Fte = FiFileTableEntry;

  FiFile() = default;
  ~FiFile();
  FiFile(const FiFile&) = delete;
  FiFile& operator=(const FiFile&) = delete;

  // Opens for reading, or for both, creating the file.
  void bindRaw(const char* name, int writeable);
  // Maps for reading. Throws _Exception_SysTools, for an empty file too.
  void bindMap(const char* name);

  int size() const { return size_; }  // bytes
  bool valid() const { return fd_ >= 0 || map_ != nullptr; }
  bool writeable() const { return writeable_; }

  // `size` bytes at `offset`. A writable file grows to hold them; of a file that
  // is not, what lies beyond its end reads as zeros, and is left out of the
  // segment's size. A mapped file has no such beyond: the segment is invalid.
  FiFileSegment segment(int offset, int size);
  FiFileSegment segment(int offset, int size, int writeable);

 private:
  friend class FiFileSegment;

  FiFileTableEntry* readSegment(int offset, int size, int writeable);
  void writeSegment(const FiFileTableEntry& entry);
  // Appends zeros up to a length.
  void zerofill(int finalLength);
  void seek(int offset);
  void read(void* to, int size);
  void write(const void* from, int size);
  void requireRaw(const char* operation) const;

  bool writeable_ = false;
  std::unique_ptr<SysToolsMapObject> map_;
  int fd_ = -1;
  int size_ = 0;
};

}  // namespace vandrelle
