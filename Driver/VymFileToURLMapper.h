// Turns file names into addresses by prefix. The mappings are tried in the order
// in which they were added, and the first that fits wins.
#pragma once

#include <memory>

namespace vandrelle {

class FdBag;
class FdStream;

class VymFileToURLMapper {
 public:
  VymFileToURLMapper();
  // With the mappings of a file, closed.
  explicit VymFileToURLMapper(const char* filename);
  ~VymFileToURLMapper();
  VymFileToURLMapper(const VymFileToURLMapper&) = delete;
  VymFileToURLMapper& operator=(const VymFileToURLMapper&) = delete;

  // Reads pairs of tokens, address prefix before file prefix, separated by white
  // space, at most 1023 characters each, and closes the mapping. A token without
  // its partner is told in the log and left out. Throws _Exception_Fatal if the
  // file can't be opened.
  void readMappingsFromFile(const char* filename);

  // Copies both.
  void addMapping(const char* urlPrefix, const char* filePrefix);

  // Comes after the last addMapping() and before the first mapFilename().
  void doneAddingMappings();

  // `filename` with its prefix exchanged, or a copy of it if no mapping fits; a
  // new array that the caller owns. Throws _Exception_Fatal before
  // doneAddingMappings().
  char* mapFilename(const char* filename);

 private:
  std::unique_ptr<FdBag> maps_;
  std::unique_ptr<FdStream> iter_;
};

}  // namespace vandrelle
