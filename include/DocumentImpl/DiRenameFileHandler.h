// Marks files as done: every file that was opened for indexing gets an ending
// behind its name when the handler dies, so that a later run passes it over.
#pragma once

#include "DocumentImpl/DiBasicFileHandler.h"

namespace vandrelle {

class FdBag;

class DiRenameFileHandler : public DiBasicFileHandler {
 public:
  // `renamestr`, the ending, is not copied.
  explicit DiRenameFileHandler(const char* renamestr);
  ~DiRenameFileHandler() override;

  std::ifstream* Open(const char* file) override;

 private:
  void renameFile(const char* name);

  FdBag* nameTable_;
  const char* renamestr_;
};

}  // namespace vandrelle
