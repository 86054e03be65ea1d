#include "Document/DcSentenceManager.h"

#include "Token/CharacterClass.h"
#include "Token/TkLexer.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcSentenceManager);
DEFINE_DESCRIPTOR(DcLSentenceManager);

namespace {

// What ends before this many characters joins the next sentence.
constexpr int kShortestSentence = 3;

bool isClosingQuote(char c) { return c == '\'' || c == '"' || c == '`'; }

// Does a sentence end at `place[pos]`? Follows the word from character to
// character.
class SentenceEnd {
 public:
  bool at(const char* place, int pos, int numch) {
    const char ch = place[pos];
    if (character_class::isSpace(ch)) {
      wordSize_ = 0;
      inAcro_ = false;
    } else if (ch != '\'' && ch != '`') {
      ++wordSize_;
    }
    if (!character_class::isSentenceMark(ch)) return false;
    // The mark counts: one letter with its mark is an initial.
    if (wordSize_ == 2) inAcro_ = true;
    const bool decimalPoint =
        ch == '.' && pos + 1 < numch && character_class::isDigit(place[pos + 1]);
    return wordSize_ >= 3 && !inAcro_ && !decimalPoint;
  }

 private:
  int wordSize_ = 0;
  bool inAcro_ = false;
};

}  // namespace

DcSentenceManager::DcSentenceManager(DcAsciiDocument* doc, TkStemmer* stemmer, TkLexer* lexer,
                                     int numSegments, int slideSize, int slideType) {
  initialize(stemmer, lexer, doc, nullptr, numSegments, slideSize, slideType, kSentenceEnd);
  scanText();
}

DcSentenceManager::DcSentenceManager(const char* buf, TkStemmer* stemmer, TkLexer* lexer,
                                     int numSegments, int slideSize, int slideType) {
  initialize(stemmer, lexer, nullptr, buf, numSegments, slideSize, slideType, kSentenceEnd);
  scanText();
}

// The first call enters the start of the text and passes its first character,
// which so counts for no word.
void DcSentenceManager::insertNextSegment(const char* place, int& pos, int numch) {
  if (pos == 0) {
    insertBoundary(0);
    ++pos;
    return;
  }
  const int lastEnd = pos;
  SentenceEnd sentenceEnd;
  for (bool ended = false; pos < numch && !ended; ++pos) ended = sentenceEnd.at(place, pos, numch);
  while (pos < numch && isClosingQuote(place[pos])) ++pos;
  if (pos - lastEnd >= kShortestSentence) insertBoundary(pos);
}

DcLSentenceManager::DcLSentenceManager(DcAsciiDocument* doc, TkStemmer* stemmer, TkLexer* lexer,
                                       int numSegments, int slideSize, int slideType) {
  initialize(stemmer, lexer, doc, nullptr, numSegments, slideSize, slideType, kSentenceEnd);
  lexer->reset();
  scanText();
}

DcLSentenceManager::DcLSentenceManager(const char* buf, TkStemmer* stemmer, TkLexer* lexer,
                                       int numSegments, int slideSize, int slideType) {
  initialize(stemmer, lexer, nullptr, buf, numSegments, slideSize, slideType, kSentenceEnd);
  lexer->reset();
  scanText();
}

}  // namespace vandrelle
