#include "DocumentImpl/DiRenameFileHandler.h"

#include <sys/wait.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "Fun/Fd.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {
constexpr int kTableHint = 16;
constexpr int kReading = 1;
constexpr int kNoShell = 127;

// As one word of the shell, whatever the name holds.
std::string quoted(const std::string& name) {
  std::string word = "'";
  for (const char c : name) {
    if (c == '\'') word += "'\\'";
    word += c;
  }
  return word + "'";
}

}  // namespace

DiRenameFileHandler::DiRenameFileHandler(const char* renamestr)
    : nameTable_(Fd::Table(kTableHint)), renamestr_(renamestr) {}

DiRenameFileHandler::~DiRenameFileHandler() {
  {
    const std::unique_ptr<FdStream> names(nameTable_->iterator());
    for (names->reset(); names->more(); names->next()) {
      renameFile(static_cast<const char*>(names->key()));
    }
  }
  delete nameTable_;
}

std::ifstream* DiRenameFileHandler::Open(const char* file) {
  std::ifstream* stream = DiBasicFileHandler::Open(file);
  if (mode_ == kReading && stream != nullptr) {
    nameTable_->insert(file, static_cast<int>(std::strlen(file)) + 1, nullptr, 0);
  }
  return stream;
}

void DiRenameFileHandler::renameFile(const char* name) {
  const std::string command =
      "mv -f " + quoted(name) + " " + quoted(std::string(name) + renamestr_);
  const int status = std::system(command.c_str());
  if (status == -1 || (WIFEXITED(status) && WEXITSTATUS(status) == kNoShell)) {
    LOG(0, 0, "failed to rename " << name);
  }
}

}  // namespace vandrelle
