// Managers whose segments are sentences.
#pragma once

#include "Document/DcSegmentManager.h"

namespace vandrelle {

DESCRIPTOR_CHILD(DcSentenceManager, DcSegmentManager);

// Finds sentences by punctuation: a sentence ends at a mark behind a word of at
// least two characters that holds no initial. Arguments as for DcSegmentManager.
class DcSentenceManager : public DcSegmentManager {
  DESCRIBED(DcSentenceManager)

  // The sentences of the document's body.
  DcSentenceManager(DcAsciiDocument* doc, TkStemmer* stemmer, TkLexer* lexer, int numSegments,
                    int slideSize, int slideType);
  // Those of a text that ends with a zero.
  DcSentenceManager(const char* buf, TkStemmer* stemmer, TkLexer* lexer, int numSegments,
                    int slideSize, int slideType);

 protected:
  void insertNextSegment(const char* place, int& pos, int numch) override;
};

DESCRIPTOR_CHILD(DcLSentenceManager, DcSegmentManager);

// Finds sentences as the lexer reports them. The lexer is reset.
class DcLSentenceManager : public DcSegmentManager {
  DESCRIBED(DcLSentenceManager)

  DcLSentenceManager(DcAsciiDocument* doc, TkStemmer* stemmer, TkLexer* lexer, int numSegments,
                     int slideSize, int slideType);
  DcLSentenceManager(const char* buf, TkStemmer* stemmer, TkLexer* lexer, int numSegments,
                     int slideSize, int slideType);
};

}  // namespace vandrelle
