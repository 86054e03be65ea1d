// Separators of feeds in which a line that begins with a fixed text divides the
// articles.
//
// An article ends before its delimiter and the next begins behind it. A delimiter
// that comes first, be it behind blank lines, makes no empty article: it is
// consumed and the answer is -1. Without a delimiter the rest of the file is one
// article. Lines are read in pieces of 255 bytes, each of which counts as a line:
// so a delimiter is also found at such a place inside a long line, and one longer
// than a piece never is.
#pragma once

#include <string>

#include "DocumentImpl/DiSeparator.h"

namespace vandrelle {

class DiLineReader;

class DiDelimSeparator : public DiSeparator {
 public:
  // Copies `delimiter`. An empty one divides nothing.
  explicit DiDelimSeparator(const char* delimiter);
  // `numseps` times `sep`.
  DiDelimSeparator(char sep, int numseps);

  long gotoNextArticle(std::ifstream* thisFile, long* docEnd) override;

 protected:
  bool isDelimiter(const DiLineReader& line) const;

  std::string delimiter_;
};

// Usenet articles in one file, with 70 dashes between them.
class DiNntpSeparator : public DiDelimSeparator {
 public:
  DiNntpSeparator() : DiDelimSeparator('-', 70) {}
};

// Custom files: the delimiter is the first line of <root>.cus, at most 1023
// bytes. Without that file, each file is one article.
class DiRunTimeSeparator : public DiDelimSeparator {
 public:
  explicit DiRunTimeSeparator(const char* root);
};

// MEDLINE: a record ends before its line "::EI"; the next one begins behind the
// line "::BRXXXXXX" that follows, and what stands between belongs to none.
class DiMedLineSeparator : public DiDelimSeparator {
 public:
  DiMedLineSeparator() : DiDelimSeparator("::EI") {}
  long gotoNextArticle(std::ifstream* thisFile, long* docEnd) override;
};

// EI: a record ends with its abstract, which is the line "AB " and the lines
// behind it that begin with a blank; the next one begins behind a line with "*".
class DiEISeparator : public DiDelimSeparator {
 public:
  DiEISeparator() : DiDelimSeparator("AB ") {}
  long gotoNextArticle(std::ifstream* thisFile, long* docEnd) override;
};

}  // namespace vandrelle
