// The interface of all lexers: machines that are fed a text character by
// character, say when a word has become available, and report the boundaries of
// sentences, lines and paragraphs.
//
//   lexer->reset();
//   for (char c : text) {
//     lexer->nextCharacter(c);
//     if (const WmWord* word = lexer->word()) use(word, lexer->wordStart(), lexer->flags());
//   }
//   lexer->end();
//   if (const WmWord* word = lexer->word()) ...
//
// A lexer looks not ahead: a word is delivered with the first character of the
// word behind it, or by end(). It holds one word and belongs to one stream at a
// time. Nothing in it fails or throws.
#pragma once

#include "Word.h"

namespace vandrelle {

// The bits of flags().
enum TkBoundary { kSentenceEnd = 1, kLineEnd = 2, kParagraphEnd = 4 };

class TkLexer {
 public:
  virtual ~TkLexer() = default;

  // Ready for a new text.
  virtual void reset() = 0;

  virtual void nextCharacter(char c) = 0;

  // The boundaries (TkBoundary) since the last word was taken.
  virtual int flags() = 0;

  // The finished word, at most 62 letters, or null if there is none. Over-long
  // words give null, once. The word is good until the next character is fed.
  virtual WmWord* word() = 0;

  // Announces the end of the text, so that a word in progress comes out.
  virtual void end() = 0;

  // The number of characters fed since reset().
  virtual int offset() = 0;
  virtual void offset(int characters) = 0;

  // The offset of the first character of the current word, from 0.
  virtual int wordStart() = 0;

  // Feeds the characters from `begin` on, as nextCharacter() would do one by
  // one, until a word is finished or `end` is reached, or earlier; answers the
  // place behind the last one fed. At least one is fed if there is any. A finished
  // word may still be null in word(): then the caller goes on with the rest. A
  // lexer need not have its own: it makes reading fast.
  virtual const char* scan(const char* begin, const char* end) {
    if (begin != end) nextCharacter(*begin++);
    return begin;
  }
};

}  // namespace vandrelle
