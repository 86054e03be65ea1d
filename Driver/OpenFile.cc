#include "Driver/OpenFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

namespace vandrelle {

bool openInputFile(const char* path, std::ifstream& stream) {
  struct stat status;
  if (stat(path, &status) != 0 || S_ISDIR(status.st_mode)) return false;
  stream.open(path);
  return stream.is_open();
}

bool openOutputFile(const char* path, std::ofstream& stream) {
  const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0) return false;
  ::close(file);
  stream.open(path, std::ios::binary | std::ios::trunc);
  return stream.is_open();
}

}  // namespace vandrelle
