#include "Token/TkRTFLexer.h"

namespace vandrelle {

using namespace character_class;

void TkRTFLexer::resetImpl() {
  insideSlash_ = 0;
  immediateSlash_ = 0;
  numberSlash_ = 0;
  curly_ = 0;
}

void TkRTFLexer::setFlags(char c) {
  if (isSentenceMark(c)) {
    if (offset_ - lastEOS_ >= 3) possibleSentence_ = 1;
    lastEOS_ = offset_;
    return;
  }
  if (possibleSentence_ != 0) {
    possibleSentence_ = 0;
    if (isSpaceOrQuote(c) || c == '\\') {
      endword_ = 1;
      flags_ |= kSentenceEnd;
    }
  }
  if (isLineBreak(c)) flags_ |= kLineEnd;
  // \par, \page, \pard
  if (immediateSlash_ != 0 && c == 'p') flags_ |= kParagraphEnd;
}

void TkRTFLexer::setLastFlags() {
  if (possibleSentence_ != 0) flags_ |= kSentenceEnd | kParagraphEnd;
}

void TkRTFLexer::nextCharacter(char c) {
  dropDeliveredWord();
  // A high byte counts as a character and is nothing else: what was held over
  // waits for the next one.
  if (isHigh(c)) {
    ++offset_;
    return;
  }
  startCharacter();
  ++offset_;
  setFlags(c);
  if (controlStep(c)) return;
  if (midword_ == 0) {
    if (!isAlphanumeric(c)) return;
    midword_ = offset_;
  }
  if (endword_ != 0) {
    if (isAlphanumeric(c)) {
      extra_ = c;
      word_ = 1;
    }
    return;
  }
  wordStep(c, false);
}

// True if `c` is not text.
bool TkRTFLexer::controlStep(char c) {
  constexpr int kSkippedDepth = 3;
  const bool brace = c == '{' || c == '}';
  if (curly_ >= kSkippedDepth) {
    if (brace) curly_ += c == '{' ? 1 : -1;
    return true;
  }
  if (brace && immediateSlash_ == 0) curly_ += c == '{' ? 1 : -1;
  if (insideSlash_ != 0) {
    if (isSpace(c) || c == '{') {
      insideSlash_ = 0;
      endword_ = 1;
    }
    if (immediateSlash_ != 0 && (brace || c == '\\' || c == '-')) insideSlash_ = 0;
    immediateSlash_ = 0;
    if (numberSlash_ == 0 || !isLetter(c)) {
      numberSlash_ = isDigit(c);
      return true;
    }
    // A letter behind the number is text again.
    numberSlash_ = 0;
    insideSlash_ = 0;
    endword_ = 1;
  }
  if (c == '\\') {
    insideSlash_ = 1;
    immediateSlash_ = 1;
    return true;
  }
  return c == '\n' || c == '\t';
}

}  // namespace vandrelle
