// Version stamps of an index's stages: the file <root>.ver.
//
//   offset      size
//   4 * stage   4     version, big-endian; a new file has three words of 0
#pragma once

#include <iosfwd>

namespace vandrelle {

class VersionControl {
 public:
  // Make the file if there is none or one that was cut short. A stage that the file does not have,
  // or a negative one, has version 0. Throw _Exception_Version.
  static int getVersion(const char* root, int stage);
  static void setVersion(const char* root, int stage, int version);

  // Writes a new file at `path`, the whole name.
  static void createVersionFile(const char* path);
  // Opens <root>.ver, made anew if it lacks words. Bits of `flag`: 1 reading, 2 writing.
  static void setVersionFile(const char* root, std::fstream* versionfile, int flag);
};

}  // namespace vandrelle
