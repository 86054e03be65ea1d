// Thin wrappers around the operating system.
#pragma once

#include <cstddef>

namespace vandrelle {

class SysTools {
 public:
  // Ends the process with a line on the error stream when memory runs out.
  static void protectNew();
  static void memoryError();

  // The system's text of the last failure; "<Invalid errno>" for a negative number.
  static const char* strerror();

  // Limits of the process, by type: 0 file size, 1 data size, 2 stack size, in bytes.
  // getLimit() gives the soft limit, at most INT_MAX; setLimit() sets both limits.
  // Throw _Exception_SysTools.
  static int getLimit(int type);
  static void setLimit(int type, int limit);

  static bool fileExists(const char* filename);
  static bool removeFile(const char* filename);
  // Writes a whole file of `size` bytes anew; false if it is not whole.
  static bool writeFile(const char* filename, const void* bytes, std::size_t size);

  // Removes the entries of `directory` whose names the regular expression matches
  // anywhere; how many. 0 for an expression that does not compile, and, with a
  // warning in the log, for a directory that cannot be read.
  static int removeFiles(const char* directory, const char* regExpr);

  enum MapMode : int {
    kMapReadOnly = 0,
    kMapPrivate = 1,   // read and write, private to the process
    kMapShared = 2,    // read and write
    kMapOrCreate = 3,  // the same; makes a file that does not exist
    kMapEmptied = 4,   // the same, emptied
  };

  // Maps a whole file. Where it may be created, a size in `*size` that is not 0 is the
  // length to map, and the file must have been given it; otherwise `*size` (if
  // `size` is not null) gets the file's size in bytes. The file stays open: its
  // descriptor goes to `*outfd`, or, with null, is never closed. Throws
  // _Exception_SysTools, also for an empty file and for one of 2 GiB or more.
  static void* map(const char* filename, int mode, int* size);
  static void* map(const char* filename, int mode, int* size, int* outfd);

  // Proves by writing, into a file next to `filePath` that is removed at once, that
  // the device has room for `sizeInKbytes` more.
  static bool freeSpace(const char* filePath, int sizeInKbytes);
};

// A mapped file, unmapped and closed with the object. Modes and sizes as for
// SysTools::map(), whose exceptions pass through.
class SysToolsMapObject {
 public:
  SysToolsMapObject() = default;
  explicit SysToolsMapObject(const char* filename, int mode = SysTools::kMapReadOnly,
                             int size = 0) {
    bind(filename, mode, size);
  }
  ~SysToolsMapObject() { release(); }
  SysToolsMapObject(const SysToolsMapObject&) = delete;
  SysToolsMapObject& operator=(const SysToolsMapObject&) = delete;

  // Lets a former mapping go. `size` is 0 but where the file may be created.
  void bind(const char* filename, int mode = SysTools::kMapReadOnly, int size = 0);
  void release();

  int fd() const { return fd_; }  // -1 when empty
  void* addr() const { return addr_; }
  int len() const { return len_; }  // bytes

 private:
  int fd_ = -1;
  void* addr_ = nullptr;
  int len_ = 0;
};

}  // namespace vandrelle
