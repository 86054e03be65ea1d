#include "Driver/InputFile.h"

#include <sys/stat.h>

#include <fstream>

namespace vandrelle {

bool openInputFile(const char* path, std::ifstream& stream) {
  struct stat status;
  if (stat(path, &status) != 0 || S_ISDIR(status.st_mode)) return false;
  stream.open(path);
  return stream.is_open();
}

}  // namespace vandrelle
