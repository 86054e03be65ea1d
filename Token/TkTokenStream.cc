#include "Token/TkTokenStream.h"

#include <cstring>
#include <utility>

namespace vandrelle {

namespace {

// A byte that cannot be told from the end of the input.
constexpr int kEnd = -1;

}  // namespace

void TkTokenStream::reset() {
  tokReset();
  currentWordNum_ = -1;
  currentWordOffset_ = 0;
  nextFlags_ = 0;
  TkLexer_->offset(0);
  TkLexer_->reset();
  nextToken()->makeInvalid();
  nextImpl();
  next();
}

int TkTokenStream::next() {
  std::swap(thisword_, nextword_);
  info_.wordNum = currentWordNum_;
  info_.offset = static_cast<std::uint32_t>(currentWordOffset_);
  nextToken()->makeInvalid();
  nextImpl();
  return TkTokenStream::more();
}

void TkTokenStream::nextImpl() {
  info_.flags = static_cast<std::uint32_t>(nextFlags_);
  while (!atEnd()) {
    ++currentWordNum_;
    nextWord(nextToken());
    if (nextToken()->valid()) {
      nextFlags_ = TkLexer_->flags();
      return;
    }
    info_.flags |= static_cast<std::uint32_t>(TkLexer_->flags());
  }
}

void TkTokenStream::nextWord(WmWord* word) {
  // The first character is fed whatever it is, even the end; from then on kEnd
  // is passed over. What the lexer says is asked for all the same: an over-long
  // word, refused once, comes out when it is asked for again.
  if (spanNext_ == spanStop_)
    TkLexer_->nextCharacter(static_cast<char>(takeCharacter()));
  else
    spanNext_ = TkLexer_->scan(spanNext_, spanStop_);
  WmWord* lexed = TkLexer_->word();
  while (lexed == nullptr && !atEnd()) {
    if (spanNext_ != spanStop_) {
      spanNext_ = TkLexer_->scan(spanNext_, spanStop_);
    } else {
      const int c = takeCharacter();
      if (c != kEnd) TkLexer_->nextCharacter(static_cast<char>(c));
    }
    lexed = TkLexer_->word();
  }
  if (lexed == nullptr) {
    TkLexer_->end();
    lexed = TkLexer_->word();
  }
  if (lexed == nullptr) return;
  currentWordOffset_ = TkLexer_->wordStart();
  stemmer_->stem(lexed, word);
}

void TkTokenStream::span(const char* begin, const char* end) {
  spanNext_ = begin;
  spanEnd_ = end;
  spanStop_ = end;
  if (begin == end) return;
  const void* stop = std::memchr(begin, 0xFF, static_cast<std::size_t>(end - begin));
  if (stop != nullptr) spanStop_ = static_cast<const char*>(stop);
}

int TkTokenStream::takeSpan() {
  const bool atStop = spanNext_ == spanStop_;
  const int c = static_cast<signed char>(*spanNext_++);
  if (atStop) span(spanNext_, spanEnd_);
  return c;
}

int TkMemoryStream::tokReset() {
  span(text_, text_ + size_);
  endSeen_ = false;
  return 0;
}

int TkMemoryStream::tokNextCharacter() {
  if (!spanEmpty()) return takeSpan();
  endSeen_ = true;
  return kEnd;
}

int TkMemoryStream::tokPeekCharacter() {
  return spanEmpty() ? kEnd : static_cast<signed char>(*spanNext());
}

}  // namespace vandrelle
