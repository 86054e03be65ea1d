// Cuts a file that holds many articles into documents. Shared by all files of a
// type.
#pragma once

#include <iosfwd>

namespace vandrelle {

class DiSeparator {
 public:
  DiSeparator() = default;
  virtual ~DiSeparator() = default;
  DiSeparator(const DiSeparator&) = delete;
  DiSeparator& operator=(const DiSeparator&) = delete;

  // Called with the stream at the start of an article, where it leaves it. Stores
  // in `docEnd` the byte offset at which the article's text ends and answers the
  // offset at which the next article begins. -1: no article starts here; the
  // stream then stands behind what was consumed and `docEnd` means nothing.
  virtual long gotoNextArticle(std::ifstream* thisFile, long* docEnd) = 0;
};

}  // namespace vandrelle
