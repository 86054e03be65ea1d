#include "Token/TkHtmlLexer.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>

namespace vandrelle {

using namespace character_class;

struct TkHtmlLexer::Classes {
  // Inside markup: the flags that a character raises, and what stops a run.
  enum : std::uint8_t { kCloses = 8, kSentenceMark = 16, kHigh = 32 };

  std::uint8_t text[256]{};
  std::uint8_t markup[256]{};
  constexpr Classes() {
    for (int c = 0; c < 0x80; ++c) {
      const int bits = kTable.bits[c];
      const int lineEnd = (bits & kLineBreak) != 0 ? kLineEnd : 0;
      if ((bits & (kLetter | kDigit)) != 0) {
        text[c] = kWordStart;
      } else if ((bits & kMark) == 0 && c != '&' && c != '<') {
        const int ends = c == '\'' || c == '-' || c == ';' ? 0 : kEndsWord;
        text[c] = static_cast<std::uint8_t>(kInGap | ends | lineEnd);
      }
      if (lineEnd != 0) markup[c] = kLineEnd;
      if ((bits & kMark) != 0) markup[c] = kSentenceMark;
    }
    markup['p'] = markup['P'] = kParagraphEnd;
    markup['>'] = kCloses;
    for (int c = 0x80; c < 0x100; ++c) markup[c] = kHigh;
  }
  static const Classes kTables;
};
constexpr TkHtmlLexer::Classes TkHtmlLexer::Classes::kTables;

void TkHtmlLexer::resetImpl() {
  insideTag_ = 0;
  lastWasBracket_ = 0;
  lastWasDash_ = 0;
  insideComment_ = 0;
}

void TkHtmlLexer::setFlags(char c) {
  // Any `p` in any tag, not only that of <p>.
  if (insideTag_ != 0 && (c == 'p' || c == 'P')) flags_ |= kParagraphEnd;
  if (isSentenceMark(c)) {
    if (offset_ - lastEOS_ >= 3) possibleSentence_ = 1;
    lastEOS_ = offset_;
  } else if (possibleSentence_ != 0) {
    possibleSentence_ = 0;
    if (isSpaceOrQuote(c)) {
      endword_ = 1;
      flags_ |= kSentenceEnd;
    }
  } else if (isLineBreak(c)) {
    flags_ |= kLineEnd;
  }
}

void TkHtmlLexer::setLastFlags() {
  if (possibleSentence_ != 0) flags_ |= kSentenceEnd;
}

void TkHtmlLexer::nextCharacter(char c) {
  startCharacter();
  step(c);
}

inline void TkHtmlLexer::step(char c) {
  ++offset_;
  TkHtmlLexer::setFlags(c);
  if (!highStep(c) && !markupStep(c)) textStep(c);
}

// True if `c` is not text.
inline bool TkHtmlLexer::markupStep(char c) {
  if (insideComment_ != 0) {
    // One dash is enough before the bracket.
    if (c == '>' && lastWasDash_ != 0) {
      insideComment_ = 0;
      insideTag_ = 0;
    }
    lastWasDash_ = c == '-';
    return true;
  }
  if (insideTag_ != 0) {
    if (c == '>') insideTag_ = 0;
    return true;
  }
  if (lastWasBracket_ != 0 && (isLetter(c) || c == '/' || (c == '!' && indexComments_ == 0))) {
    lastWasBracket_ = 0;
    insideTag_ = 1;
    if (c == '!') insideComment_ = 1;
    return true;
  }
  lastWasBracket_ = c == '<';
  return c == '<';
}

const char* TkHtmlLexer::scan(const char* begin, const char* end) {
  if (begin == end) return begin;
  startCharacter();
  const char* p = begin;
  while (p != end && word_ == 0) {
    if (possibleSentence_ != 0 || lastWasBracket_ != 0) {
      step(*p++);
    } else if (insideTag_ != 0) {
      p = insideComment_ != 0 ? commentRun(p, end) : tagRun(p, end);
    } else {
      if (period_ == 0) {
        p = textRun(Classes::kTables.text, p, end);
        if (p == end || word_ != 0) break;
      }
      if (*p == '<' && end - p >= 2 && (isLetter(p[1]) || p[1] == '/')) {
        insideTag_ = 1;
        offset_ += 2;
        p += 2;
      } else {
        step(*p++);
      }
    }
  }
  return p;
}

#ifdef __SSE2__
namespace {

constexpr int kBlock = 16;

struct MarkupBlock {
  int plain;     // characters in front of the first that stops the run
  bool lineEnd;  // among them
  bool paragraph;
};

// `highStops` is all ones or all zeros.
inline MarkupBlock markupBlock(const char* p, __m128i highStops) {
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const auto is = [block](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
  // `>` and `?` differ in the lowest bit only.
  const __m128i brackets =
      _mm_cmpeq_epi8(_mm_or_si128(block, _mm_set1_epi8(1)), _mm_set1_epi8('?'));
  const __m128i stops = _mm_or_si128(_mm_or_si128(brackets, _mm_and_si128(block, highStops)),
                                     _mm_or_si128(is('.'), is('!')));
  const int plain =
      std::countr_zero(static_cast<unsigned>(_mm_movemask_epi8(stops)) | 1u << kBlock);
  const int before = (1 << plain) - 1;
  const __m128i lineEnds = _mm_or_si128(is('\n'), is('\r'));
  const __m128i ps = _mm_cmpeq_epi8(_mm_or_si128(block, _mm_set1_epi8(0x20)), _mm_set1_epi8('p'));
  return {plain, (_mm_movemask_epi8(lineEnds) & before) != 0,
          (_mm_movemask_epi8(ps) & before) != 0};
}

}  // namespace
#endif

// Feeds what has no effect beyond flags.
inline const char* TkHtmlLexer::markupRun(const char* begin, const char* end) {
  // A high byte acts only behind a finished word.
  const int stops =
      Classes::kCloses | Classes::kSentenceMark | (endword_ != 0 ? Classes::kHigh : 0);
  int raised = 0;
  const char* p = begin;
  bool stopped = false;
#ifdef __SSE2__
  const __m128i highStops = _mm_set1_epi8(endword_ != 0 ? -1 : 0);
  while (!stopped && end - p >= kBlock) {
    const MarkupBlock block = markupBlock(p, highStops);
    raised |= (block.lineEnd ? kLineEnd : 0) | (block.paragraph ? kParagraphEnd : 0);
    p += block.plain;
    stopped = block.plain != kBlock;
  }
#endif
  for (; !stopped && p != end; ++p) {
    const int bits = Classes::kTables.markup[static_cast<unsigned char>(*p)];
    if ((bits & stops) != 0) break;
    raised |= bits;
  }
  flags_ |= raised & (kLineEnd | kParagraphEnd);
  offset_ += static_cast<int>(p - begin);
  return p;
}

const char* TkHtmlLexer::tagRun(const char* begin, const char* end) {
  const char* p = markupRun(begin, end);
  if (p != end) step(*p++);
  return p;
}

const char* TkHtmlLexer::commentRun(const char* begin, const char* end) {
  const char* p = markupRun(begin, end);
  // High bytes between a dash and the bracket are passed over.
  for (const char* back = p; back != begin;) {
    if (isHigh(*--back)) continue;
    lastWasDash_ = *back == '-';
    break;
  }
  if (p != end) step(*p++);
  return p;
}

}  // namespace vandrelle
