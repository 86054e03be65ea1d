// Input streams over one window of a file. They differ from the standard file
// streams in what a seek costs: inside the window it moves a pointer and the
// bytes stay; the standard ones throw their buffer away on every seek. The block
// reader of documents, the readers of 8- and 12-byte records and the line
// readers of headers all seek at every step, so they depend on this.
//
//   DcSourceStream   an std::ifstream: source files and record files
//   DcListStream     an std::fstream that can only be read: file lists
//
// The window takes the place of the file buffer of the base, so is_open() and
// close() of the base say and do nothing; deleting the stream closes the file.
#pragma once

#include <fstream>
#include <memory>
#include <streambuf>

namespace vandrelle {

class DcFileWindow final : public std::streambuf {
 public:
  // `size`: bytes of the window, allocated at the first read.
  explicit DcFileWindow(int size) : size_(size) {}
  ~DcFileWindow() override;
  DcFileWindow(const DcFileWindow&) = delete;
  DcFileWindow& operator=(const DcFileWindow&) = delete;

  // True on success. Never creates.
  bool open(const char* path);

 protected:
  int_type underflow() override;
  std::streamsize xsgetn(char* to, std::streamsize count) override;
  pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                   std::ios_base::openmode mode) override;
  pos_type seekpos(pos_type position, std::ios_base::openmode mode) override;

 private:
  std::streamsize readFile(char* to, std::streamsize count);
  off_type position() const { return windowEnd_ - (egptr() - gptr()); }

  int size_;
  int fd_ = -1;
  off_type windowEnd_ = 0;  // file position of egptr()
  std::unique_ptr<char[]> window_;
};

template <typename Base>
class DcFileStream : public Base {
 public:
  static constexpr int kSourceWindow = 65536;
  static constexpr int kRecordWindow = 16384;

  // good() tells whether the file could be opened.
  explicit DcFileStream(const char* path, int windowSize = kSourceWindow) : window_(windowSize) {
    this->std::basic_ios<char>::rdbuf(&window_);
    if (!window_.open(path)) this->setstate(std::ios_base::failbit);
  }
  // An empty stream: open() follows.
  DcFileStream() : window_(kSourceWindow) {
    this->std::basic_ios<char>::rdbuf(&window_);
    this->setstate(std::ios_base::failbit);
  }
  bool open(const char* path) {
    this->clear();
    if (!window_.open(path)) this->setstate(std::ios_base::failbit);
    return this->good();
  }

 private:
  DcFileWindow window_;
};

using DcSourceStream = DcFileStream<std::ifstream>;
using DcListStream = DcFileStream<std::fstream>;

}  // namespace vandrelle
