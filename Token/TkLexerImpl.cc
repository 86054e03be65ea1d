#include "Token/TkLexerImpl.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <iterator>

namespace vandrelle {

using namespace character_class;

namespace {

// The letter that a letter or digit becomes inside a word; 0 for all else.
struct FoldedLetters {
  char of[256]{};
  constexpr FoldedLetters() {
    for (int c = 'a'; c <= 'z'; ++c) of[c] = of[c - 'a' + 'A'] = static_cast<char>(c);
    for (int c = '0'; c <= '9'; ++c) of[c] = static_cast<char>(c);
  }
};
constexpr FoldedLetters kFolded;

// The Latin-1 letters from 193 on. 192 has its entity too, but counts as no
// letter. As words are folded, both cases of a letter give the same text, and
// the same as the entity that is written out in HTML.
constexpr int kFirstReplaced = 193;
constexpr const char* kEntities[] = {
    "&Aacute;", "&Acirc;",  "&Atilde;", "&Auml;",   "&Aring;",  "&AElig;", "&Ccedil;", "&Egrave;",
    "&Eacute;", "&Ecirc;",  "&Euml;",   "&Igrave;", "&Iacute;", "&Icirc;", "&Iuml;",   "&ETH;",
    "&Ntilde;", "&Ograve;", "&Oacute;", "&Ocirc;",  "&Otilde;", "&Ouml;",  "",         "&Oslash;",
    "&Ugrave;", "&Uacute;", "&Ucirc;",  "&Uuml;",   "&Yacute;", "&THORN;", "&szlig;",  "&agrave;",
    "&aacute;", "&acirc;",  "&atilde;", "&auml;",   "&aring;",  "&aelig;", "&ccedil;", "&egrave;",
    "&eacute;", "&ecirc;",  "&euml;",   "&igrave;", "&iacute;", "&icirc;", "&iuml;",   "&eth;",
    "&ntilde;", "&ograve;", "&oacute;", "&ocirc;",  "&otilde;", "&ouml;",  "",         "&oslash;",
    "&ugrave;", "&uacute;", "&ucirc;",  "&uuml;",   "&yacute;", "&thorn;", "&yuml;"};
static_assert(std::size(kEntities) == 256 - kFirstReplaced);

#ifdef __SSE2__
constexpr int kBlock = 16;

// Copies a block from `p` to `to`, its letters folded, and answers how many
// letters and digits it begins with.
inline int foldBlock(const char* p, char* to) {
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  // Digits have the bit set that upper-case letters lack.
  const __m128i folded = _mm_or_si128(block, _mm_set1_epi8(0x20));
  // c in [first, first + n) as one signed comparison, first moved to -128.
  const __m128i letters = _mm_cmplt_epi8(
      _mm_add_epi8(folded, _mm_set1_epi8(static_cast<char>(0x80 - 'a'))), _mm_set1_epi8(-128 + 26));
  const __m128i digits = _mm_cmplt_epi8(
      _mm_add_epi8(block, _mm_set1_epi8(static_cast<char>(0x80 - '0'))), _mm_set1_epi8(-128 + 10));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), folded);
  const int mask = _mm_movemask_epi8(_mm_or_si128(letters, digits));
  return std::countr_one(static_cast<unsigned>(mask));
}
#endif

}  // namespace

// haveamperson_ is not among what is cleared.
void TkLexerImpl::reset() {
  flags_ = 0;
  midword_ = 0;
  endword_ = 0;
  current_ = 0;
  extra_ = 0;
  word_ = 0;
  offset_ = 0;
  period_ = 0;
  toolong_ = 0;
  possibleSentence_ = 0;
  lastEOS_ = -1;
  resetImpl();
}

WmWord* TkLexerImpl::word() {
  if (word_ == 0) return nullptr;
  if (toolong_ != 0) {
    toolong_ = 0;
    return nullptr;
  }
  buf_[0] = static_cast<char>(current_);
  return reinterpret_cast<WmWord*>(buf_);
}

void TkLexerImpl::end() {
  setLastFlags();
  if (midword_ != 0) word_ = 1;
}

void TkLexerImpl::nextCharacter(char c) {
  startCharacter();
  ++offset_;
  setFlags(c);
  if (!highStep(c)) textStep(c);
}

const char* TkLexerImpl::scan(const char* begin, const char* end) {
  while (begin != end) {
    nextCharacter(*begin++);
    if (word_ != 0) break;
  }
  return begin;
}

void TkLexerImpl::textStep(char c) {
  const bool startsWord = isAlphanumeric(c) || c == '&';
  if (midword_ == 0) {
    if (!startsWord) return;
    midword_ = offset_;
  }
  if (endword_ != 0) {
    haveamperson_ = c == '&';
    if (startsWord) {
      extra_ = c;
      word_ = 1;
    }
    return;
  }
  if (c == '&') haveamperson_ = 1;
  wordStep(c, c == '&' || (c == ';' && haveamperson_ != 0));
}

void TkLexerImpl::wordStep(char c, bool joins) {
  const char last = letterAt(current_);
  if (current_ >= 2 && last == '-') {
    // A hyphen parts two words, but at the end of a line it joins them.
    if (!isLineBreak(c)) endword_ = 1;
    if (isAlphanumeric(c)) {
      word_ = 1;
      extra_ = c;
    }
    --current_;
    return;
  }
  if (period_ != 0) {
    period_ = 0;
    if (c == '.') {
      endword_ = 1;
      return;
    }
  }
  if (c == '.') {
    period_ = 1;
    return;
  }
  if (!isAlphanumeric(c) && c != '\'' && c != '-' && !joins) {
    // Not the neighbour of the apostrophe but the letter before that decides.
    if (last == '\'' && letterAt(current_ - 2) != 's') --current_;
    endword_ = 1;
    return;
  }
  if (c == '\'' && last == '\'') {
    endword_ = 1;
    return;
  }
  if (current_ >= kMaxLetters) {
    toolong_ = 1;
    return;
  }
  append(c);
}

inline const char* TkLexerImpl::letterRun(const char* begin, const char* end) {
  const char* p = begin;
  char* to = buf_ + current_ + 1;
  char* const full = buf_ + kMaxLetters + 1;
#ifdef __SSE2__
  // Whole blocks, as long as all their letters have room. What is stored behind
  // the last letter is never looked at.
  while (end - p >= kBlock && full - to >= kBlock) {
    const int letters = foldBlock(p, to);
    p += letters;
    to += letters;
    if (letters != kBlock) return finishRun(begin, p);
  }
#endif
  while (p != end && to != full) {
    const char letter = kFolded.of[static_cast<unsigned char>(*p)];
    if (letter == 0) break;
    *to++ = letter;
    ++p;
  }
  return finishRun(begin, p);
}

const char* TkLexerImpl::textRun(const std::uint8_t* classes, const char* begin, const char* end) {
  const auto classOf = [classes](const char* p) { return classes[static_cast<unsigned char>(*p)]; };
  const char* p = begin;
  if (midword_ != 0 && endword_ == 0) {
    if (current_ == 0 || current_ >= kMaxLetters || buf_[current_] == '-') return p;
    p = letterRun(p, end);
    if (p == end || (classOf(p) & kEndsWord) == 0 || buf_[current_] == '\'') return p;
    flags_ |= classOf(p) & kLineEnd;
    endword_ = 1;
    ++offset_;
    ++p;
  }
  const char* const gap = p;
  int lineEnd = 0;
  while (p != end && (classOf(p) & kInGap) != 0) lineEnd |= classOf(p++);
  flags_ |= lineEnd & kLineEnd;
  offset_ += static_cast<int>(p - gap);
  if (midword_ == 0) return p;
  if (p != gap) haveamperson_ = 0;
  if (p != end && (classOf(p) & kWordStart) != 0) {
    haveamperson_ = 0;
    extra_ = *p++;
    word_ = 1;
    ++offset_;
  }
  return p;
}

void TkLexerImpl::replaceCharacter() {
  const int value = static_cast<unsigned char>(extra_);
  if (value < kFirstReplaced) return;
  for (const char* text = kEntities[value - kFirstReplaced]; *text != '\0'; ++text) {
    if (current_ < kMaxLetters) append(*text);
  }
}

}  // namespace vandrelle
