// A newspaper's feed: documents of fields that begin with a dot, divided by the
// line "*** BRS DOCUMENT BOUNDARY ***".
//
// A document's text ends with the first line "..TE:" that a field follows
// directly. Only behind that is the dividing line looked for: a document without
// such an end takes all that follows, to the end of the file, with the exception
// of a last line without a newline.
#pragma once

#include "DocumentImpl/DiSeparator.h"

namespace vandrelle {

class DiTimesSeparator : public DiSeparator {
 public:
  long gotoNextArticle(std::ifstream* thisFile, long* docEnd) override;
};

}  // namespace vandrelle
