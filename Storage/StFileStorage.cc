#include "Storage/StFileStorage.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "Storage/StException.h"

namespace vandrelle {

namespace {

void* const kMapped = reinterpret_cast<void*>(1);

// Both throw on behalf of the storage at `path`, from the caller's line.
[[noreturn]] void fail(const char* what, const char* path, int line = __builtin_LINE()) {
  THROW_AT(St, line, what << StFileText{path});
}
[[noreturn]] void failSystem(const char* what, const char* path, int line = __builtin_LINE()) {
  THROW_AT(St, line, what << StFileSystemText{path});
}

}  // namespace

StFileStorage::StFileStorage(bool mm) : useMMap(mm) { InternalInit(); }

StFileStorage::StFileStorage(const char* path, bool mm) : useMMap(mm) {
  InternalInit();
  Root(path);
}

StFileStorage::~StFileStorage() {
  if (isOpen) CloseFiles();
}

void StFileStorage::InternalInit() {
  pageSize = sysconf(_SC_PAGESIZE);
  if (pageSize <= 0) fail("Couldn't find page size", "");
}

void StFileStorage::Root(const char* path) {
  if (isOpen) fail("Can't set root on open storage", Root());
  root.reset();
  if (path == nullptr) return;
  const std::size_t bytes = std::strlen(path) + 1;
  root.reset(new char[bytes]);
  std::memcpy(root.get(), path, bytes);
}

void StFileStorage::RequireOpen() const {
  if (!isOpen) fail("Storage is not open!", root != nullptr ? Root() : "");
}

std::string StFileStorage::FilePath(std::uint64_t i) const {
  if (!isDirectory) return Root();
  char name[18];
  std::snprintf(name, sizeof name, "/%.8llx", static_cast<unsigned long long>(i));
  return std::string(Root()) + name;
}

void StFileStorage::Initialize() {
  if (root == nullptr) fail("Must specify root before initializing", "");
  if (isOpen) fail("Can't initialize open storage!", Root());
  if (DIR* entries = opendir(Root())) {
    RemoveDirectoryStorage(entries);
  } else if (unlink(Root()) != 0 && errno != ENOENT) {
    failSystem("Can't remove file for init", Root());
  }
  maxPos = 0;
  isDirectory = false;
  AddFile(0);
  isOpen = true;
  isWritable = true;
}

bool StFileStorage::IsOneFile(const char* path) {
  struct stat status;
  return ::stat(path, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
}

// Initialize() makes one file of them all.
bool StFileStorage::Remove(const char* path) {
  struct stat status;
  if (::stat(path, &status) != 0) return false;
  if (S_ISDIR(status.st_mode)) StFileStorage(path, false).Initialize();
  return ::unlink(path) == 0;
}

void StFileStorage::RemoveDirectoryStorage(DIR* entries) {
  while (const dirent* entry = readdir(entries)) {
    if (entry->d_name[0] != '0') continue;
    if (unlinkat(dirfd(entries), entry->d_name, 0) != 0) {
      const int error = errno;
      closedir(entries);
      errno = error;
      failSystem("Couldn't remove", Root());
    }
  }
  closedir(entries);
  if (startWithSingleFile && rmdir(Root()) != 0) {
    failSystem("Can't remove directory for init", Root());
  }
}

void StFileStorage::Open(bool writable, bool create) {
  if (root == nullptr) fail("Must specify root before opening", "");
  if (isOpen) fail("Can't open open storage!", Root());
  struct stat status;
  const bool exists = stat(Root(), &status) == 0;
  if (!exists && errno == ENOENT && writable && create) {
    Initialize();
    return;
  }
  isDirectory = exists && S_ISDIR(status.st_mode);
  if (isDirectory) {
    OpenDirectoryFiles(writable);
  } else {
    OpenSingleFile(writable);
  }
  TakeSize();
  isWritable = writable;
  isOpen = true;
}

void StFileStorage::OpenDirectoryFiles(bool writable) {
  for (std::uint64_t i = 0;; ++i) {
    const std::string path = FilePath(i);
    const int fd = open(path.c_str(), (writable ? O_RDWR : O_RDONLY) | O_CLOEXEC);
    if (fd >= 0) {
      AddFileDesc(i, fd);
      continue;
    }
    if (errno == ENOENT && i > 0) return;
    const int error = errno;
    CloseFiles();
    errno = error;
    failSystem("Couldn't open file", path.c_str());
  }
}

void StFileStorage::OpenSingleFile(bool writable) {
  const int fd = open(Root(), (writable ? O_RDWR : O_RDONLY) | O_CLOEXEC);
  if (fd < 0) failSystem("Couldn't open file", Root());
  AddFileDesc(0, fd);
}

// The lengths of all files are taken: a mapping beyond the end of a file that is
// shorter than it should be would end the process at the first access.
void StFileStorage::TakeSize() {
  fileLengths.clear();
  for (int fd : fileDescs) {
    struct stat status;
    if (fstat(fd, &status) != 0) {
      const int error = errno;
      CloseFiles();
      errno = error;
      failSystem("Couldn't stat file", Root());
    }
    fileLengths.push_back(static_cast<std::uint64_t>(status.st_size));
  }
  if (fileLengths.back() > kFileBytes) {
    CloseFiles();
    fail("File is too long for a storage", Root());
  }
  maxPos = std::uint64_t{kFileBytes} * (fileDescs.size() - 1) + fileLengths.back();
}

void StFileStorage::AddFile(std::uint64_t i) {
  if (i == 0 && !startWithSingleFile) {
    // A cleared directory of a former storage stays and is used again.
    if (mkdir(Root(), 07777) != 0 && errno != EEXIST) {
      failSystem("Couldn't make directory", Root());
    }
    isDirectory = true;
  } else if (i == 1 && !isDirectory) {
    SwitchToDirectory();
  }
  AddFileDesc(i, OpenRawFile(FilePath(i).c_str()));
}

// The descriptor of file 0 stays valid while the file moves.
void StFileStorage::SwitchToDirectory() {
  const std::string aside = std::string(Root()) + ".move";
  if (rename(Root(), aside.c_str()) != 0) failSystem("Can't rename file", Root());
  if (mkdir(Root(), 07777) != 0) failSystem("Couldn't make directory", Root());
  isDirectory = true;
  if (rename(aside.c_str(), FilePath(0).c_str()) != 0) failSystem("Can't rename file", Root());
}

int StFileStorage::OpenRawFile(const char* name) {
  const int fd = open(name, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) failSystem("Couldn't create file", Root());
  return fd;
}

void StFileStorage::AddFileDesc(std::uint64_t i, int fd) {
  fileDescs.resize(i + 1, -1);
  fileDescs[i] = fd;
}

void StFileStorage::CloseFiles() {
  bool closed = true;
  int error = 0;
  for (int fd : fileDescs) {
    if (close(fd) != 0 && closed) {
      closed = false;
      error = errno;
    }
  }
  fileDescs.clear();
  if (!closed) {
    errno = error;
    failSystem("Couldn't close file", Root());
  }
}

int StFileStorage::FileDesc(std::uint64_t i) const {
  if (i >= fileDescs.size()) fail("Buffer past end of storage!", Root());
  return fileDescs[i];
}

StStoragePos StFileStorage::MaxPos() {
  RequireOpen();
  return StStoragePos::FromBytes(maxPos);
}

void StFileStorage::SetMaxPos(const StStoragePos& newMax) {
  if (!isWritable) {
    fail("Can't call SetMaxPos on read-only storage!", root != nullptr ? Root() : "");
  }
  const std::uint64_t last = FileIndex(newMax.Bytes());
  while (fileDescs.size() > last + 1) {
    const std::string path = FilePath(fileDescs.size() - 1);
    const int fd = fileDescs.back();
    fileDescs.pop_back();
    if (close(fd) != 0) failSystem("Couldn't close file", Root());
    if (unlink(path.c_str()) != 0) failSystem("Couldn't unlink", Root());
  }
  while (fileDescs.size() <= last) AddFile(fileDescs.size());
  if (ftruncate(FileDesc(last), FilePos(newMax.Bytes())) != 0) {
    failSystem("Couldn't truncate file", Root());
  }
  maxPos = newMax.Bytes();
}

// Grows the storage for a buffer that reaches beyond its end, by at most one
// file; how many of the buffer's bytes exist already.
StStorageLen StFileStorage::ExtendFor(const StStorageBuffer* buffer, std::uint64_t endPos) {
  if (!isWritable) fail("Block past end of read-only storage!", Root());
  const std::uint64_t start = buffer->Start().Bytes();
  const std::uint64_t existing = maxPos - start;
  if (start > maxPos || endPos < start || existing > UINT32_MAX) {
    fail("Can't extend storage by more than 2^31!", Root());
  }
  if (FileIndex(endPos) > fileDescs.size()) fail("Buffer is longer than a file!", Root());
  if (FileIndex(endPos) == fileDescs.size()) AddFile(fileDescs.size());
  maxPos = endPos;
  return static_cast<StStorageLen>(existing);
}

bool StFileStorage::CanMap(std::uint64_t start, std::uint64_t endPos) const {
  return useMMap && !isWritable && start < endPos && FileIndex(start) == FileIndex(endPos) &&
         FilePos(endPos) <= fileLengths[FileIndex(start)];
}

void StFileStorage::NewData(StStorageBuffer* buffer) {
  RequireOpen();
  const std::uint64_t start = buffer->Start().Bytes();
  const std::uint64_t endPos = start + buffer->Length();
  StStorageLen readLen = buffer->Length();
  if (endPos > maxPos || endPos < start) readLen = ExtendFor(buffer, endPos);

  if (CanMap(start, endPos)) {
    const std::uint32_t offset = FilePos(start);
    const std::uint32_t delta = offset % static_cast<std::uint32_t>(pageSize);
    void* address = mmap(nullptr, std::size_t{buffer->Length()} + delta, PROT_READ, MAP_SHARED,
                         FileDesc(FileIndex(start)), offset - delta);
    if (address == MAP_FAILED) failSystem("mmap failed", Root());
    SetBufferData(buffer, static_cast<byte*>(address) + delta);
    SetBufferInfo(buffer, kMapped);
    return;
  }
  byte* data = new (std::nothrow) byte[buffer->Length()];
  if (data == nullptr) fail("Couldn't allocate buffer data!", Root());
  SetBufferData(buffer, data);
  SetBufferInfo(buffer, nullptr);
  if (buffer->AccessMode() == kStWrite) readLen = 0;
  Read(data, start, readLen);
  // No stray memory reaches the disk by a buffer that is not filled to its end.
  std::memset(data + readLen, 0, buffer->Length() - readLen);
}

void StFileStorage::DeleteData(StStorageBuffer* buffer) {
  RequireOpen();
  if (BufferInfo(buffer) == kMapped) {
    const std::uint32_t delta =
        FilePos(buffer->Start().Bytes()) % static_cast<std::uint32_t>(pageSize);
    if (munmap(buffer->Data() - delta, std::size_t{buffer->Length()} + delta) != 0) {
      failSystem("munmap failed", Root());
    }
    return;
  }
  if (isWritable && buffer->AccessMode() != kStRead) Write(buffer);
  delete[] buffer->Data();
}

template <typename Move>
void StFileStorage::EachPiece(std::uint64_t start, StStorageLen length, Move move) const {
  const std::uint64_t endPos = start + length;
  if (endPos > maxPos) fail("Buffer past end of storage!", Root());
  StStorageLen inLast = 0;
  if (FileIndex(start) != FileIndex(endPos)) {
    inLast = FilePos(endPos);
    if (length - inLast > kFileBytes - FilePos(start))
      fail("Buffer is longer than a file!", Root());
    if (inLast > 0) move(FileDesc(FileIndex(endPos)), 0, length - inLast, inLast);
  }
  if (length > inLast) move(FileDesc(FileIndex(start)), FilePos(start), 0, length - inLast);
}

void StFileStorage::Read(byte* data, std::uint64_t start, StStorageLen length) {
  RequireOpen();
  EachPiece(start, length, [&](int fd, std::uint32_t pos, StStorageLen at, StStorageLen bytes) {
    ReadData(fd, pos, data + at, bytes);
  });
}

void StFileStorage::Write(const StStorageBuffer* buffer) {
  if (!isWritable) fail("Storage is not writable!", Root());
  if (buffer->AccessMode() == kStRead) return;
  EachPiece(buffer->Start().Bytes(), buffer->Length(),
            [&](int fd, std::uint32_t pos, StStorageLen at, StStorageLen bytes) {
              WriteData(fd, pos, buffer->Data() + at, bytes);
            });
}

void StFileStorage::ReadData(int fd, std::uint32_t pos, byte* data, StStorageLen length) {
  if (length == 0) return;
  if (lseek(fd, pos, SEEK_SET) < 0) failSystem("Couldn't seek", Root());
  while (length > 0) {
    const ssize_t count = read(fd, data, length);
    if (count < 0 && errno == EINTR) continue;
    if (count == 0) errno = ENODATA;
    if (count <= 0) failSystem("Couldn't read", Root());
    data += count;
    length -= static_cast<StStorageLen>(count);
  }
}

// The message of a failed write says "read": that is how it has always been.
void StFileStorage::WriteData(int fd, std::uint32_t pos, const byte* data, StStorageLen length) {
  if (length == 0) return;
  if (lseek(fd, pos, SEEK_SET) < 0) failSystem("Couldn't seek", Root());
  while (length > 0) {
    const ssize_t count = write(fd, data, length);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) failSystem("Couldn't read", Root());
    data += count;
    length -= static_cast<StStorageLen>(count);
  }
}

void StFileStorage::Flush() {
  if (!isWritable) fail("Can't flush read-only storage!", root != nullptr ? Root() : "");
  for (int fd : fileDescs) {
    if (fsync(fd) != 0) failSystem("Couldn't flush", Root());
  }
}

}  // namespace vandrelle
