// ClariNet: batches of articles, each of which begins behind a line "#! rnews".
//
// An article ends before the next such line, or before the provider's notice that
// no text is to be taken from: a line that begins "This, and all articles" behind
// one that begins "--". The notice would else make every article alike.
#pragma once

#include "DocumentImpl/DiDelimSeparator.h"

namespace vandrelle {

class DiClariSeparator : public DiDelimSeparator {
 public:
  // With non-zero `justLoc` of an article only what stands in its first line
  // before a "(" with a "-" behind it is kept, and nothing without these.
  explicit DiClariSeparator(int justLoc = 0) : DiDelimSeparator("#! rnews"), justLoc_(justLoc) {}

  // Unlike the base's, white space is not skipped.
  long gotoNextArticle(std::ifstream* thisFile, long* docEnd) override;

 private:
  long locationEnd(const DiLineReader& line) const;

  int justLoc_;
};

}  // namespace vandrelle
