// Headers of the form keyword, separator character, one blank, value; a value
// may run over several lines where the format says so.
#pragma once

#include <iosfwd>

#include "DocumentImpl/DiHeaderParserImpl.h"

namespace vandrelle {

class DiKeyWordHeaderParser : public DiHeaderParserImpl {
 public:
  char* getHeader(DcHeaderDocument* doc, const char* header) override;

  // The value of `header` among the lines of `stream`, a new array that the
  // caller owns, or null.
  virtual char* extractHeader(std::istream* stream, const char* header);

 protected:
  // Lines are read in pieces of up to kLine - 1 characters.
  static constexpr int kLine = 256;

  // `caseSensitivity` 1 ignores case.
  DiKeyWordHeaderParser(char headSeparator, int caseSensitivity)
      : headSeparator_(headSeparator), caseSensitivity_(caseSensitivity) {}

  // What a line with the header begins with: a new array that the caller owns,
  // or null for a header that the format does not have.
  virtual char* getSearchWord(const char* header);
  // May the value of `searchword` run over several lines?
  virtual int MultiLine(const char* searchword);
  // Does `line` go on with it?
  virtual int stillMulti(const char* searchword, const char* line);
  // What `line` adds to it, a new array that the caller owns.
  virtual char* getMultiLine(const char* searchword, const char* line);

  char headSeparator_;
  int caseSensitivity_;
};

}  // namespace vandrelle
