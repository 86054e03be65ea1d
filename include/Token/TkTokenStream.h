// The words of a text as a stream: a character source, a lexer and a stemmer in
// one. The key of a token is its stem, a WmWord; its data is a TkLexInfo. The
// indexer and the query parser read this.
//
//   for (stream->reset(); stream->more(); stream->next()) use(stream->key());
//
// Unlike other streams it stands nowhere before the first reset(): a subclass
// supplies the characters. Words that the stemmer drops are left out, but use up
// a word number. The stream looks ahead by one token.
#pragma once

#include <cstdint>

#include "Fun/FdStream.h"
#include "Token/TkLexer.h"
#include "Token/TkStemmer.h"

namespace vandrelle {

struct TkLexInfo {
  std::uint32_t flags;   // TkBoundary bits gathered at the word and at dropped words behind it
  std::uint32_t offset;  // of the word's first character in the input, from 0
  std::int32_t wordNum;  // position of the word; dropped ones count too
};
static_assert(sizeof(TkLexInfo) == 12);

class TkTokenStream : public FdStream {
 public:
  // Neither is owned. The lexer is in use from reset() to the last token and can
  // serve no other stream meanwhile.
  TkTokenStream(TkStemmer* stemmer, TkLexer* lexer) : stemmer_(stemmer), TkLexer_(lexer) {}
  TkTokenStream(const TkTokenStream&) = delete;
  TkTokenStream& operator=(const TkTokenStream&) = delete;

  using FdStream::data;
  using FdStream::key;

  void reset() override;
  bool more() override { return thisword_[0] != 0; }
  int next() override;
  // Null and size 0 at the end.
  void* key() override { return more() ? thisword_ : nullptr; }
  int keySize() override { return static_cast<unsigned char>(thisword_[0]) + (more() ? 1 : 0); }
  void* data() override { return more() ? &info_ : nullptr; }
  int dataSize() override { return more() ? static_cast<int>(sizeof info_) : 0; }

 protected:
  // The character source. A byte 0xFF and the end both read as -1.
  virtual int tokReset() { return 0; }
  virtual int tokEnd() = 0;
  virtual int tokNextCharacter() = 0;
  virtual int tokPeekCharacter() = 0;

  // A source that has characters in memory offers them here, so that they are
  // read without a call for each: while the span holds any, they are taken from
  // it, and tokEnd() and tokNextCharacter() are not asked. A source sets its
  // spans in tokReset() and tokNextCharacter(), before that reads its character,
  // and takes spanNext() for its position. The bytes must stay until used up.
  void span(const char* begin, const char* end);
  const char* spanNext() const { return spanNext_; }
  bool spanEmpty() const { return spanNext_ == spanEnd_; }
  // The next character of the span, which must hold one, as a signed value.
  int takeSpan();

 private:
  void nextImpl();
  void nextWord(WmWord* word);
  bool atEnd() { return spanEmpty() && tokEnd() != 0; }
  int takeCharacter() { return spanEmpty() ? tokNextCharacter() : takeSpan(); }
  WmWord* nextToken() { return reinterpret_cast<WmWord*>(nextword_); }

  TkStemmer* stemmer_;
  TkLexer* TkLexer_;
  TkLexInfo info_{};
  int currentWordNum_ = -1;
  int currentWordOffset_ = 0;
  int nextFlags_ = 0;
  // The two change places at every token, so that a word is copied once.
  char buffers_[2][64] = {};
  char* thisword_ = buffers_[0];
  char* nextword_ = buffers_[1];
  const char* spanNext_ = nullptr;
  const char* spanStop_ = nullptr;  // the first byte 0xFF of the span, or its end
  const char* spanEnd_ = nullptr;
};

// Tokens of a text in one block of memory.
class TkMemoryStream final : public TkTokenStream {
 public:
  // `size` bytes at `text`, not owned. The end is known as soon as the last
  // character was read; with `lateEnd` only when one more was asked for, as with
  // an input stream. That decides whether a word is lost that is one letter long
  // and the very last character: only without `lateEnd` it is.
  TkMemoryStream(TkStemmer* stemmer, TkLexer* lexer, const char* text, std::size_t size,
                 bool lateEnd = false)
      : TkTokenStream(stemmer, lexer), text_(text), size_(size), lateEnd_(lateEnd) {}

 protected:
  int tokReset() override;
  int tokEnd() override { return spanEmpty() && (endSeen_ || !lateEnd_); }
  int tokNextCharacter() override;
  int tokPeekCharacter() override;

 private:
  const char* text_;
  std::size_t size_;
  bool lateEnd_;
  bool endSeen_ = false;
};

}  // namespace vandrelle
