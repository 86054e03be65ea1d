#include "DocumentImpl/DiClariSeparator.h"

#include <fstream>

#include "DocumentImpl/DiText.h"

namespace vandrelle {

long DiClariSeparator::gotoNextArticle(std::ifstream* thisFile, long* docEnd) {
  DiLineReader line(*thisFile);
  const long origpos = line.begin();
  *docEnd = origpos;
  long marked = -1;
  bool afterDashes = false;
  for (bool first = true; line.next(); first = false) {
    if (isDelimiter(line)) {
      if (first) return -1;
      break;
    }
    if (marked < 0) {
      if (justLoc_ != 0 && first) {
        marked = locationEnd(line);
      } else if (afterDashes && line.startsWith("This, and all articles")) {
        marked = line.begin();
      }
    }
    afterDashes = line.startsWith("--");
    *docEnd = line.end();
  }
  if (marked >= 0) *docEnd = marked;
  seekTo(*thisFile, origpos);
  return line.end();
}

long DiClariSeparator::locationEnd(const DiLineReader& line) const {
  const std::size_t bracket = line.view().find('(');
  const bool found =
      bracket != std::string_view::npos && line.view().find('-', bracket) != std::string_view::npos;
  return line.begin() + (found ? static_cast<long>(bracket) : 0);
}

}  // namespace vandrelle
