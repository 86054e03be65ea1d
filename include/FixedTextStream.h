// An output stream over a fixed buffer, for text that is composed and used at
// once: exception messages, log entries. What does not fit is lost; the text is
// always ended with a NUL. Nothing is allocated.
#pragma once

#include <cstddef>
#include <ostream>
#include <streambuf>

namespace vandrelle {

class FixedTextStream : private std::streambuf, public std::ostream {
 public:
  // `buffer` of `size` bytes, at least 1, must outlive the stream. The text may
  // have `size` - 1 characters.
  FixedTextStream(char* buffer, std::size_t size)
      : std::ostream(static_cast<std::streambuf*>(this)), buffer_(buffer), size_(size) {
    rewind();
  }

  // Starts a new text at position 0 and forgets an overflow of the former, and its
  // number formats.
  void rewind() {
    setp(buffer_, buffer_ + size_ - 1);
    clear();
    flags(std::ios_base::skipws | std::ios_base::dec);
    precision(6);
    width(0);
    fill(' ');
  }

  // The text so far, ended with a NUL. Valid until the next rewind().
  const char* text() {
    *pptr() = '\0';
    return buffer_;
  }

 private:
  char* buffer_;
  std::size_t size_;
};

}  // namespace vandrelle
