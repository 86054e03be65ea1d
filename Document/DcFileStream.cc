#include "Document/DcFileStream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace vandrelle {

namespace {

constexpr int kPage = 4096;

}  // namespace

DcFileWindow::~DcFileWindow() {
  if (fd_ >= 0) ::close(fd_);
}

bool DcFileWindow::open(const char* path) {
  if (fd_ >= 0) ::close(fd_);
  // A listed file may have become something else: opening a named pipe would wait
  // for ever, and a directory opens but has nothing to read.
  fd_ = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  struct stat status;
  if (fd_ >= 0 && (::fstat(fd_, &status) != 0 || !S_ISREG(status.st_mode))) {
    ::close(fd_);
    fd_ = -1;
  }
  windowEnd_ = 0;
  setg(nullptr, nullptr, nullptr);
  return fd_ >= 0;
}

std::streamsize DcFileWindow::readFile(char* to, std::streamsize count) {
  ssize_t got;
  do {
    got = ::pread(fd_, to, static_cast<size_t>(count), windowEnd_);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) return 0;
  windowEnd_ += got;
  return got;
}

DcFileWindow::int_type DcFileWindow::underflow() {
  if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
  if (!window_) window_.reset(new char[static_cast<size_t>(size_)]);
  // The window begins a little before the place asked for, so that small steps
  // back stay inside it.
  const off_type target = windowEnd_;
  const std::streamsize before = size_ > kPage ? target % kPage : 0;
  windowEnd_ -= before;
  const std::streamsize got = readFile(window_.get(), size_);
  if (got <= before) {
    // The end of the file: what there is before it stays for a seek back.
    setg(window_.get(), window_.get() + got, window_.get() + got);
    if (got < before) {
      setg(nullptr, nullptr, nullptr);
      windowEnd_ = target;
    }
    return traits_type::eof();
  }
  setg(window_.get(), window_.get() + before, window_.get() + got);
  return traits_type::to_int_type(*gptr());
}

std::streamsize DcFileWindow::xsgetn(char* to, std::streamsize count) {
  std::streamsize done = 0;
  while (done < count) {
    const std::streamsize held = egptr() - gptr();
    if (held > 0) {
      const std::streamsize take = std::min(held, count - done);
      std::memcpy(to + done, gptr(), static_cast<size_t>(take));
      setg(eback(), gptr() + take, egptr());
      done += take;
    } else if (count - done >= size_) {
      const std::streamsize got = readFile(to + done, count - done);
      if (got == 0) break;
      setg(nullptr, nullptr, nullptr);
      done += got;
    } else if (traits_type::eq_int_type(underflow(), traits_type::eof())) {
      break;
    }
  }
  return done;
}

DcFileWindow::pos_type DcFileWindow::seekoff(off_type offset, std::ios_base::seekdir from,
                                             std::ios_base::openmode mode) {
  if (from == std::ios_base::cur) {
    offset += position();
  } else if (from == std::ios_base::end) {
    struct stat status;
    if (::fstat(fd_, &status) != 0) return pos_type(off_type(-1));
    offset += status.st_size;
  }
  return seekpos(pos_type(offset), mode);
}

DcFileWindow::pos_type DcFileWindow::seekpos(pos_type position, std::ios_base::openmode) {
  const off_type target = position;
  if (fd_ < 0 || target < 0) return pos_type(off_type(-1));
  const off_type windowStart = windowEnd_ - (egptr() - eback());
  if (windowStart <= target && target <= windowEnd_) {
    setg(eback(), eback() + (target - windowStart), egptr());
  } else {
    setg(nullptr, nullptr, nullptr);
    windowEnd_ = target;
  }
  return position;
}

}  // namespace vandrelle
