// Makes one temporary file of the term accumulator (layout in IkTempfile.h) out
// of several, without their positions. A tool for use beside the stages of a
// build, which merge their files into an index at once.
#pragma once

#include <string>
#include <vector>

namespace vandrelle {

class IkTempfileMerger {
 public:
  // The files hold chunks below `numchunks`.
  explicit IkTempfileMerger(int numchunks) : numchunks_(numchunks) {}

  // In chunk order. A file that can't be opened is passed over.
  void addTempfile(const char* srcfile);

  // Writes the file. Throws _Exception_Ik for a damaged source, _Exception_IkIO
  // when it can't be written.
  void merge(const char* dstfile);

 private:
  std::vector<std::string> tempfiles_;
  int numchunks_;
};

}  // namespace vandrelle
