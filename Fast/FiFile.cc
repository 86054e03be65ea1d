#include "Fast/FiFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include "Exception.h"

namespace vandrelle {

namespace {

constexpr int kZeroPiece = 8192;

}  // namespace

FiFileSegment::FiFileSegment(const FiFileSegment& other) { attach(other); }

FiFileSegment& FiFileSegment::operator=(const FiFileSegment& other) {
  if (this != &other) {
    release();
    attach(other);
  }
  return *this;
}

void FiFileSegment::attach(const FiFileSegment& other) {
  data_ = other.data_;
  size_ = other.size_;
  fte_ = other.fte_;
  if (fte_ == nullptr) return;
  ++fte_->refcount_;
  if (fte_->writercount_ >= 0) ++fte_->writercount_;
}

void FiFileSegment::release() {
  if (fte_ == nullptr) return;
  if (--fte_->refcount_ > 0) {
    if (fte_->writercount_ > 0) --fte_->writercount_;
  } else {
    // A write that throws leaves the bytes here, and isn't tried again.
    if (std::exchange(fte_->writercount_, 0) > 0) fte_->mgr_->writeSegment(*fte_);
    delete fte_;
  }
  fte_ = nullptr;
  data_ = nullptr;
}

FiFile::~FiFile() {
  if (fd_ >= 0) ::close(fd_);
}

void FiFile::bindRaw(const char* name, int writeable) {
  writeable_ = writeable != 0;
  fd_ = ::open(name, (writeable_ ? O_RDWR | O_CREAT : O_RDONLY) | O_CLOEXEC, 0644);
  if (fd_ < 0) THROW(Fatal, "Can't open() " << name);
  struct stat status;
  if (::fstat(fd_, &status) != 0 || status.st_size > INT_MAX) THROW(Fatal, "Can't stat() " << name);
  size_ = static_cast<int>(status.st_size);
}

void FiFile::bindMap(const char* name) {
  map_ = std::make_unique<SysToolsMapObject>(name);
  size_ = map_->len();
}

FiFileSegment FiFile::segment(int offset, int size) { return segment(offset, size, writeable_); }

FiFileSegment FiFile::segment(int offset, int size, int writeable) {
  if (map_) {
    if (offset < 0 || size < 0 || offset > size_ - size) return FiFileSegment();
    return FiFileSegment(static_cast<char*>(map_->addr()) + offset, size, nullptr);
  }
  FiFileTableEntry* entry = readSegment(offset, size, writeable);
  return FiFileSegment(entry->data_.get(), entry->size_, entry);
}

FiFileTableEntry* FiFile::readSegment(int offset, int size, int writeable) {
  if (fd_ < 0) THROW(Fatal, "Can't readSegment(): invalid fd");
  const bool writing = writeable_ && writeable != 0;
  auto entry = std::make_unique<FiFileTableEntry>();
  entry->data_ = std::make_unique<char[]>(static_cast<std::size_t>(size));
  entry->refcount_ = 1;
  entry->writercount_ = writing ? 1 : -1;
  entry->offset_ = offset;
  entry->size_ = size;
  entry->mgr_ = this;
  if (writing) {
    zerofill(offset + size);
  } else {
    entry->size_ = std::clamp(size_ - offset, 0, size);
  }
  seek(offset);
  read(entry->data_.get(), entry->size_);
  return entry.release();
}

void FiFile::writeSegment(const FiFileTableEntry& entry) {
  seek(entry.offset_);
  write(entry.data_.get(), entry.size_);
}

void FiFile::zerofill(int finalLength) {
  if (!writeable_ || size_ > finalLength) return;
  static const char kZeros[kZeroPiece] = {};
  seek(size_);
  while (size_ < finalLength) {
    const int piece = std::min(kZeroPiece, finalLength - size_);
    write(kZeros, piece);
    size_ += piece;
  }
}

void FiFile::requireRaw(const char* operation) const {
  if (fd_ < 0) THROW(Fatal, operation << ": not in raw mode");
}

void FiFile::seek(int offset) {
  requireRaw("Can't seek");
  if (::lseek(fd_, offset, SEEK_SET) < 0) THROW(Fatal, "Can't seek: " << std::strerror(errno));
}

void FiFile::read(void* to, int size) {
  requireRaw("Can't read");
  char* next = static_cast<char*>(to);
  while (size > 0) {
    const ssize_t got = ::read(fd_, next, static_cast<std::size_t>(size));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) THROW(Fatal, "Can't read: " << std::strerror(errno));
    if (got == 0) THROW(Fatal, "Can't read: the file has become shorter");
    next += got;
    size -= static_cast<int>(got);
  }
}

void FiFile::write(const void* from, int size) {
  requireRaw("Can't write");
  const char* next = static_cast<const char*>(from);
  while (size > 0) {
    const ssize_t written = ::write(fd_, next, static_cast<std::size_t>(size));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) THROW(Fatal, "Can't write: " << std::strerror(errno));
    next += written;
    size -= static_cast<int>(written);
  }
}

}  // namespace vandrelle
