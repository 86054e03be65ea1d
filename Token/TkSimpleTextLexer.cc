#include "Token/TkSimpleTextLexer.h"

namespace vandrelle {

using namespace character_class;

// Line breaks are left to the steps: what follows them counts.
struct TkSimpleTextLexer::Classes {
  std::uint8_t of[256]{};
  constexpr Classes() {
    for (int c = 0; c < 0x80; ++c) {
      const int bits = kTable.bits[c];
      if ((bits & (kLetter | kDigit)) != 0) {
        of[c] = kWordStart;
      } else if ((bits & (kLineBreak | kMark)) == 0 && c != '&') {
        of[c] = c == '\'' || c == '-' || c == ';' ? kInGap : kInGap | kEndsWord;
      }
    }
  }
};

void TkSimpleTextLexer::setFlags(char c) {
  if (isSentenceMark(c)) {
    if (offset_ - lastEOS_ >= 3) possibleSentence_ = 1;
    lastEOS_ = offset_;
  } else {
    if (possibleSentence_ != 0) {
      possibleSentence_ = 0;
      if (isSpaceOrQuote(c)) {
        endword_ = 1;
        flags_ |= kSentenceEnd;
      }
    }
    if (isSpace(c)) {
      if (isLineBreak(c)) flags_ |= kLineEnd;
      if (lastWasNewline_ != 0) flags_ |= kParagraphEnd;
    }
  }
  lastWasNewline_ = isLineBreak(c);
}

void TkSimpleTextLexer::setLastFlags() {
  if (possibleSentence_ != 0) {
    flags_ |= kSentenceEnd | kParagraphEnd;
  } else if (lastWasNewline_ != 0) {
    flags_ |= kParagraphEnd;
  }
}

inline void TkSimpleTextLexer::step(char c) {
  ++offset_;
  TkSimpleTextLexer::setFlags(c);
  if (!highStep(c)) textStep(c);
}

const char* TkSimpleTextLexer::scan(const char* begin, const char* end) {
  static constexpr Classes kClasses;
  if (begin == end) return begin;
  startCharacter();
  const char* p = begin;
  while (p != end && word_ == 0) {
    if (possibleSentence_ == 0 && period_ == 0 && lastWasNewline_ == 0) {
      p = textRun(kClasses.of, p, end);
      if (p == end || word_ != 0) break;
    }
    step(*p++);
  }
  return p;
}

}  // namespace vandrelle
