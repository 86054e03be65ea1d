#include "Tool/SysTools.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "Tool/RegularExpression.h"
#include "Tool/ToolException.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

int realtype(int type) {
  switch (type) {
    case 0:
      return RLIMIT_FSIZE;
    case 1:
      return RLIMIT_DATA;
    case 2:
      return RLIMIT_STACK;
    default:
      THROW(SysTools, "Invalid resource type");
  }
}

struct MapFlags {
  int openFlags;
  int protection;
  int sharing;
  mode_t permissions;
};

constexpr MapFlags kMapModes[] = {
    {O_RDONLY, PROT_READ, MAP_SHARED, 0444},
    {O_RDONLY, PROT_READ | PROT_WRITE, MAP_PRIVATE, 0444},
    {O_RDWR, PROT_READ | PROT_WRITE, MAP_SHARED, 0644},
    {O_RDWR | O_CREAT, PROT_READ | PROT_WRITE, MAP_SHARED, 0644},
    {O_RDWR | O_CREAT | O_TRUNC, PROT_READ | PROT_WRITE, MAP_SHARED, 0644},
};

[[noreturn]] void throwMapFailure(int fd, int error, int line = __builtin_LINE()) {
  close(fd);
  errno = error;
  THROW_AT(SysTools, line, "mmap failed: " << SysTools::strerror());
}

// The directory of a path, with its slash. A path whose only slash stands at its
// very beginning counts as one of the working directory.
std::string directoryOf(const char* filePath) {
  if (filePath != nullptr) {
    for (std::size_t i = std::strlen(filePath); i-- > 1;) {
      if (filePath[i] == '/') return std::string(filePath, i + 1);
    }
  }
  return "./";
}

bool writeKbytes(int fd, int kbytes) {
  constexpr int kBlockKbytes = 32;
  static char block[kBlockKbytes * 1024];
  for (; kbytes > kBlockKbytes; kbytes -= kBlockKbytes) {
    if (write(fd, block, sizeof block) == -1) return false;
  }
  return write(fd, block, static_cast<std::size_t>(kbytes) * 1024) != -1;
}

}  // namespace

void SysTools::protectNew() { std::set_new_handler(memoryError); }

// Plain system calls: streams might allocate. Returning would have the failing
// allocation tried again for ever.
void SysTools::memoryError() {
  static constexpr char kText[] = "Out of memory! Exiting...\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kText, sizeof kText - 1);
  _exit(255);
}

const char* SysTools::strerror() { return errno < 0 ? "<Invalid errno>" : std::strerror(errno); }

int SysTools::getLimit(int type) {
  const int resource = realtype(type);
  rlimit limits;
  if (getrlimit(static_cast<__rlimit_resource_t>(resource), &limits) != 0) {
    THROW(SysTools, "getrlimit() failed");
  }
  return limits.rlim_cur > INT_MAX ? INT_MAX : static_cast<int>(limits.rlim_cur);
}

void SysTools::setLimit(int type, int limit) {
  const int resource = realtype(type);
  rlimit limits;
  limits.rlim_cur = limits.rlim_max = static_cast<rlim_t>(limit);
  if (setrlimit(static_cast<__rlimit_resource_t>(resource), &limits) != 0) {
    THROW(SysTools, "setrlimit() failed");
  }
}

bool SysTools::fileExists(const char* filename) {
  struct stat status;
  return filename != nullptr && stat(filename, &status) == 0;
}

bool SysTools::removeFile(const char* filename) {
  return filename != nullptr && unlink(filename) == 0;
}

bool SysTools::writeFile(const char* filename, const void* bytes, std::size_t size) {
  std::FILE* file = std::fopen(filename, "wb");
  if (file == nullptr) return false;
  const bool written = size == 0 || std::fwrite(bytes, 1, size, file) == size;
  return std::fclose(file) == 0 && written;
}

int SysTools::removeFiles(const char* directory, const char* regExpr) {
  const RegularExpression expression(regExpr);
  if (!expression.valid() || directory == nullptr) return 0;
  DIR* entries = opendir(directory);
  if (entries == nullptr) {
    LOG(0, 0, "Warning: directory " << directory << " can't be opened for reading\n");
    return 0;
  }
  std::string path(directory);
  if (path.empty() || path.back() != '/') path += '/';
  const std::size_t directoryLength = path.size();
  int removed = 0;
  while (const dirent* entry = readdir(entries)) {
    const char* name = entry->d_name;
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) continue;
    if (!expression.matches(name)) continue;
    path.resize(directoryLength);
    path += name;
    if (removeFile(path.c_str())) ++removed;
  }
  closedir(entries);
  return removed;
}

void* SysTools::map(const char* filename, int mode, int* size) {
  return map(filename, mode, size, nullptr);
}

void* SysTools::map(const char* filename, int mode, int* size, int* outfd) {
  if (mode < kMapReadOnly || mode > kMapEmptied) THROW(SysTools, "map(): invalid mode");
  const MapFlags& how = kMapModes[mode];
  const int fd = open(filename, how.openFlags | O_CLOEXEC, how.permissions);
  if (fd < 0) {
    THROW(SysTools, "couldn't open() file \"" << filename << "\": " << strerror());
  }
  int length = mode >= kMapOrCreate && size != nullptr ? *size : 0;
  if (length == 0) {
    struct stat status;
    if (fstat(fd, &status) != 0) {
      close(fd);
      THROW(SysTools, "couldn't stat() file");
    }
    if (status.st_size > INT_MAX) throwMapFailure(fd, EFBIG);
    length = static_cast<int>(status.st_size);
  }
  if (length < 0) throwMapFailure(fd, EINVAL);
  void* address =
      mmap(nullptr, static_cast<std::size_t>(length), how.protection, how.sharing, fd, 0);
  if (address == MAP_FAILED) throwMapFailure(fd, errno);
  if (size != nullptr) *size = length;
  if (outfd != nullptr) *outfd = fd;
  return address;
}

bool SysTools::freeSpace(const char* filePath, int sizeInKbytes) {
  constexpr std::size_t kMaxPath = 1015;
  constexpr std::size_t kMaxName = 1022;
  if (sizeInKbytes <= 0) return true;
  if (filePath != nullptr && std::strlen(filePath) >= kMaxPath) return false;

  std::string name = directoryOf(filePath) + "a3q";
  int fd;
  while ((fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644)) < 0) {
    if (name.size() >= kMaxName) return false;
    name += "a3q";
  }
  // Without its name already, so that a run killed here leaves nothing.
  unlink(name.c_str());
  const bool written = writeKbytes(fd, sizeInKbytes);
  close(fd);
  return written;
}

void SysToolsMapObject::bind(const char* filename, int mode, int size) {
  release();
  len_ = size;
  int descriptor = -1;
  addr_ = SysTools::map(filename, mode, &len_, &descriptor);
  fd_ = descriptor;
}

void SysToolsMapObject::release() {
  if (fd_ < 0) return;
  munmap(addr_, static_cast<std::size_t>(len_));
  close(fd_);
  fd_ = -1;
  addr_ = nullptr;
  len_ = 0;
}

}  // namespace vandrelle
