// Stands between a file name and the stream that is read, so that a type can
// have compressed files, or files that are renamed once they are indexed.
#pragma once

#include <iosfwd>

namespace vandrelle {

class DiFileHandler {
 public:
  DiFileHandler() = default;
  virtual ~DiFileHandler() = default;
  DiFileHandler(const DiFileHandler&) = delete;
  DiFileHandler& operator=(const DiFileHandler&) = delete;

  // A new stream, to be given back to Close(), or null when the file cannot be
  // opened.
  virtual std::ifstream* Open(const char* file) = 0;

  // Closes and deletes.
  virtual void Close(std::ifstream* stream) = 0;

  // 0 while files are added, 1 while they are read for indexing.
  virtual void setMode(int mode) = 0;
};

}  // namespace vandrelle
