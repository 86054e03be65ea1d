// A storage on disk. What its root is tells how it is kept:
//
//   a plain file     the bytes 0 to MaxPos() - 1
//   a directory      files "00000000", "00000001", ... (8 lower-case hexadecimal
//                    digits), each but the last exactly kFileBytes long
//
// It begins as a plain file and changes over when it outgrows one file, without
// its users noticing. Byte p lies in file p / kFileBytes at offset p % kFileBytes.
// A storage whose end falls on a boundary has a next, empty file. There is no
// close: destroying the object closes, and does not flush.
#pragma once

#include <dirent.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Storage/StStorage.h"

namespace vandrelle {

class StFileStorage : public StStorage {
 public:
  static constexpr uint32 kFileBytes = 0x7FFF0000;

  // `mm`: buffers of a storage open for reading are mapped. All operations throw
  // _Exception_St.
  explicit StFileStorage(bool mm);
  StFileStorage(const char* path, bool mm);
  ~StFileStorage() override;

  // The path, copied; null before it was set. Not on an open storage.
  void Root(const char* path);
  const char* Root() const { return root.get(); }
  void MMap(bool mm) { useMMap = mm; }
  bool MMap() const { return useMMap; }
  // Whether the storage is created as a plain file (true) or as a directory.
  void StartWithSingleFile(bool single) { startWithSingleFile = single; }
  bool StartWithSingleFile() const { return startWithSingleFile; }

  // Of a directory at the root only entries whose names begin with "0" are
  // removed; another entry makes the removal of the directory fail.
  void Initialize() override;
  // Is the storage at `path` one file, which isn't empty and so can be mapped whole?
  static bool IsOneFile(const char* path);
  // Removes the storage at `path`, however many files it has grown to. False where
  // there is none.
  static bool Remove(const char* path);
  void Open(bool writable, bool create) override;
  void Flush() override;
  StStoragePos MaxPos() override;
  // Growing over several files leaves those in between at the length they have.
  void SetMaxPos(const StStoragePos& newMax) override;

 protected:
  void NewData(StStorageBuffer* buffer) override;
  void DeleteData(StStorageBuffer* buffer) override;

 private:
  static std::uint64_t FileIndex(std::uint64_t pos) { return pos / kFileBytes; }
  static std::uint32_t FilePos(std::uint64_t pos) {
    return static_cast<std::uint32_t>(pos % kFileBytes);
  }

  void InternalInit();
  void RequireOpen() const;
  // Closes `entries`, which are those of the root.
  void RemoveDirectoryStorage(DIR* entries);
  void OpenDirectoryFiles(bool writable);
  void OpenSingleFile(bool writable);
  void TakeSize();
  void AddFile(std::uint64_t i);
  void SwitchToDirectory();
  int OpenRawFile(const char* name);
  void AddFileDesc(std::uint64_t i, int fd);
  void CloseFiles();
  int FileDesc(std::uint64_t i) const;
  std::string FilePath(std::uint64_t i) const;
  StStorageLen ExtendFor(const StStorageBuffer* buffer, std::uint64_t endPos);
  bool CanMap(std::uint64_t start, std::uint64_t endPos) const;
  // Calls move(fd, position in that file, offset in the bytes, bytes) for what lies in
  // each file of `length` bytes from `start` on, the last file first.
  template <typename Move>
  void EachPiece(std::uint64_t start, StStorageLen length, Move move) const;
  void Read(byte* data, std::uint64_t start, StStorageLen length);
  void Write(const StStorageBuffer* buffer);
  void ReadData(int fd, std::uint32_t pos, byte* data, StStorageLen length);
  void WriteData(int fd, std::uint32_t pos, const byte* data, StStorageLen length);

  std::unique_ptr<char[]> root;
  std::vector<int> fileDescs;              // one for each file
  std::vector<std::uint64_t> fileLengths;  // as found by a read-only open
  std::uint64_t maxPos = 0;
  bool useMMap;
  bool startWithSingleFile = true;
  bool isDirectory = false;  // how the root is kept at the moment
  long pageSize = 0;
};

}  // namespace vandrelle
