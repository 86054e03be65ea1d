#include "DocumentImpl/DiTimesSeparator.h"

#include <fstream>

#include "DocumentImpl/DiText.h"

namespace vandrelle {

namespace {
constexpr std::string_view kBoundary = "*** BRS DOCUMENT BOUNDARY ***";
}

long DiTimesSeparator::gotoNextArticle(std::ifstream* thisFile, long* docEnd) {
  DiLineReader line(*thisFile);
  const long origpos = line.begin();
  bool armed = false;
  bool first = true;
  for (;; first = false) {
    *docEnd = line.end();
    if (!line.next()) break;
    if (first && line.startsWith(kBoundary)) return -1;
    if (armed && line.startsWith(".")) break;
    armed = line.startsWith("..TE:");
    // The end of the file has been met in the midst of a line.
    if (thisFile->eof()) break;
  }
  while (line.next() && !line.startsWith(kBoundary)) {
  }
  seekTo(*thisFile, origpos);
  return line.end();
}

}  // namespace vandrelle
