// The handler of plain files.
#pragma once

#include "DocumentImpl/DiFileHandler.h"

namespace vandrelle {

class DiBasicFileHandler : public DiFileHandler {
 public:
  std::ifstream* Open(const char* file) override;
  void Close(std::ifstream* stream) override;
  void setMode(int mode) override { mode_ = mode; }

 protected:
  int mode_ = 0;
};

}  // namespace vandrelle
