// A manager whose segments are the paragraphs that the lexer reports.
#pragma once

#include "Document/DcSegmentManager.h"

namespace vandrelle {

DESCRIPTOR_CHILD(DcParagraphManager, DcSegmentManager);

// Arguments as for DcSegmentManager. The lexer is reset.
class DcParagraphManager : public DcSegmentManager {
  DESCRIBED(DcParagraphManager)

  DcParagraphManager(DcAsciiDocument* doc, TkStemmer* stemmer, TkLexer* lexer, int numSegments,
                     int slideSize, int slideType);
  DcParagraphManager(const char* buf, TkStemmer* stemmer, TkLexer* lexer, int numSegments,
                     int slideSize, int slideType);
};

}  // namespace vandrelle
