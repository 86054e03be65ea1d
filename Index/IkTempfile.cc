#include "Index/IkTempfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Index/IkException.h"
#include "Tool/ByteOrder.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

constexpr std::size_t kFlushBytes = std::size_t{1} << 18;

}  // namespace

IkTempfile::IkTempfile(const char* filename)
    : name_(filename), fd_(::open(filename, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)) {
  if (fd_ < 0) {
    THROW(IkIO, "Couldn't create temporary file '" << name_ << "': " << std::strerror(errno));
  }
  pending_.reserve(kFlushBytes + kFlushBytes / 4);
}

IkTempfile::~IkTempfile() {
  if (fd_ >= 0) ::close(fd_);
}

void IkTempfile::append(const void* bytes, std::size_t size) {
  pending_.append(static_cast<const char*>(bytes), size);
}

void IkTempfile::writeWord(const WmWord* word) {
  append(word, static_cast<std::size_t>(word->num_bytes()));
  linestart_ = pending_.size();
  pending_.append(4, '\0');
}

void IkTempfile::addChunk(int c_num, int c_freq) {
  if (c_freq >= kMaxCount) {
    logTooFrequent(c_num);
    c_freq = kMaxCount;
  }
  unsigned char record[kMaxRecordBytes];
  append(record, encode(record, c_num, c_freq));
}

void IkTempfile::addRecords(const unsigned char* records, std::size_t size) {
  append(records, size);
}

void IkTempfile::logTooFrequent(int chunk) { LOG(0, 0, "Frequency too large for doc #" << chunk); }

void IkTempfile::writeLine() {
  const std::size_t rowSize = pending_.size() - linestart_ - 4;
  if (rowSize < 1) LOG(0, 0, "Internal: writing empty row");
  storeU32(pending_.data() + linestart_, static_cast<std::uint32_t>(rowSize));
  if (pending_.size() >= kFlushBytes) flush();
}

void IkTempfile::writeEOF() {
  pending_.push_back('\0');
  flush();
  const int closed = ::close(fd_);
  fd_ = -1;
  if (closed != 0) {
    THROW(IkIO, "Couldn't write temporary file '" << name_ << "': " << std::strerror(errno));
  }
}

void IkTempfile::flush() {
  const char* next = pending_.data();
  std::size_t left = pending_.size();
  while (left > 0) {
    const ssize_t written = ::write(fd_, next, left);
    if (written < 0) {
      if (errno == EINTR) continue;
      THROW(IkIO, "Couldn't write temporary file '" << name_ << "': " << std::strerror(errno));
    }
    next += written;
    left -= static_cast<std::size_t>(written);
  }
  pending_.clear();
}

}  // namespace vandrelle
