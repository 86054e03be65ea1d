// The handler of compressed files. Each open file is decompressed as a whole into
// a temporary one, /tmp/PROCESS.STREAM.tmp, so that its stream can seek; Close()
// removes that. A run that dies in between leaves it.
//
// The work is done by a child process, which is waited for: /usr/local/bin/gunzip,
// or where there is none the gunzip of the search path. Whatever the child wrote
// before it failed is what the stream delivers; the failure is logged.
#pragma once

#include <sys/types.h>

#include <string>

#include "DocumentImpl/DiBasicFileHandler.h"

namespace vandrelle {

class DiZipFileHandler : public DiBasicFileHandler {
 public:
  DiZipFileHandler();

  // Never null. Throws _Exception_Fatal when the temporary file cannot be made or
  // read, or no process can be started.
  std::ifstream* Open(const char* file) override;
  void Close(std::ifstream* stream) override;

 private:
  std::string temporaryName(const std::ifstream* stream) const;

  pid_t pid_;
};

}  // namespace vandrelle
