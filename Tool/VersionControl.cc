#include "Tool/VersionControl.h"

#include <sys/stat.h>

#include <fstream>

#include "Tool/ByteOrder.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"
#include "Tool/ToolException.h"

namespace vandrelle {

namespace {

constexpr int kReading = 1;
constexpr int kWriting = 2;
constexpr int kStages = 3;
constexpr int kWordBytes = 4;

}  // namespace

int VersionControl::getVersion(const char* root, int stage) {
  std::fstream file;
  setVersionFile(root, &file, kReading);
  if (stage < 0) return 0;
  char word[kWordBytes];
  file.seekg(std::streamoff{stage} * kWordBytes);
  return file.read(word, kWordBytes) ? loadS32(word) : 0;
}

void VersionControl::setVersion(const char* root, int stage, int version) {
  std::fstream file;
  setVersionFile(root, &file, kReading | kWriting);
  if (stage < 0) return;
  char word[kWordBytes];
  storeS32(word, version);
  file.seekp(std::streamoff{stage} * kWordBytes);
  if (!file.write(word, kWordBytes).flush()) {
    file.close();
    THROW(Version, "could not write " << root << ".ver");
  }
}

void VersionControl::createVersionFile(const char* path) {
  static constexpr char kZeros[kStages * kWordBytes] = {};
  if (!SysTools::writeFile(path, kZeros, sizeof kZeros)) {
    THROW(Version, "could not create " << path);
  }
}

void VersionControl::setVersionFile(const char* root, std::fstream* versionfile, int flag) {
  const NameManager name(root);
  const char* path = name.suffix(".ver");
  struct stat status;
  if (stat(path, &status) != 0 || status.st_size < kStages * kWordBytes) createVersionFile(path);
  std::ios::openmode mode = std::ios::binary;
  if ((flag & kReading) != 0) mode |= std::ios::in;
  if ((flag & kWriting) != 0) mode |= std::ios::out;
  versionfile->open(path, mode);
  if (!versionfile->is_open()) THROW(Version, "could not open " << path);
}

}  // namespace vandrelle
