#include "Document/DcDocumentStream.h"

#include <algorithm>
#include <cstring>

#include "Document/DcAsciiDocument.h"

namespace vandrelle {

DcDocumentStream::DcDocumentStream(TkStemmer* stemmer, TkLexer* lexer, DcAsciiDocument* doc,
                                   int bufsize)
    : TkTokenStream(stemmer, lexer) {
  initialize(bufsize, doc);
  partition(doc->numCharacters());
}

DcDocumentStream::DcDocumentStream(TkStemmer* stemmer, TkLexer* lexer)
    : TkTokenStream(stemmer, lexer) {}

DcDocumentStream::~DcDocumentStream() { delete[] currentBlock_; }

void DcDocumentStream::initialize(int bufsize, DcAsciiDocument* doc) {
  bufsize_ = bufsize;
  doc_ = doc;
}

void DcDocumentStream::partition(int numChars) {
  // Sizes come from the index's files.
  numChars = std::max(numChars, 0);
  numBlocks_ = 1;
  lastBlockSize_ = 0;
  currentBlock_ = nullptr;
  if (bufsize_ < numChars) {
    lastBlockSize_ = numChars % bufsize_;
    numBlocks_ = numChars / bufsize_ + 1;
  } else {
    lastBlockSize_ = bufsize_ = numChars;
  }
}

void DcDocumentStream::loadFirstBlock(long offset) {
  // Zeroed, and one byte longer than asked for: a file that has shrunk since it
  // was added leaves bytes unread, and a peek at the very end reads one more.
  delete[] currentBlock_;
  currentBlock_ = new char[static_cast<std::size_t>(bufsize_) + 1]();
  doc_->characters(offset, bufsize_, currentBlock_);
  blockNum_ = 1;
  offerBlock();
}

void DcDocumentStream::loadBlock(long offset) {
  doc_->characters(offset, bufsize_, currentBlock_);
  ++blockNum_;
  offerBlock();
}

void DcDocumentStream::offerBlock() {
  span(currentBlock_, currentBlock_ + (blockNum_ == numBlocks_ ? lastBlockSize_ : bufsize_));
}

int DcDocumentStream::tokReset() {
  if (!doc_->sourceAvailable()) return -1;
  loadFirstBlock(0);
  return 0;
}

int DcDocumentStream::tokEnd() {
  if (!doc_->sourceAvailable()) return 1;
  return blockNum_ == numBlocks_ && blockCharNum() == lastBlockSize_;
}

void DcDocumentStream::loadIfUsedUp() {
  if (blockNum_ != 0 && blockNum_ < numBlocks_ && blockCharNum() == bufsize_) LoadNextBuffer();
}

int DcDocumentStream::tokNextCharacter() {
  loadIfUsedUp();
  return spanEmpty() ? -1 : takeSpan();
}

int DcDocumentStream::tokPeekCharacter() {
  loadIfUsedUp();
  return currentBlock_ == nullptr ? -1 : static_cast<signed char>(*spanNext());
}

void DcDocumentStream::LoadNextBuffer() { loadBlock(static_cast<long>(bufsize_) * blockNum_); }

DcHeaderDocumentStream::DcHeaderDocumentStream(TkStemmer* stemmer, TkLexer* lexer,
                                               DcAsciiDocument* doc, int headSize, int bufsize,
                                               char* fieldsText)
    : DcDocumentStream(stemmer, lexer), headSize_(std::max(headSize, 0)), fieldsText_(fieldsText) {
  initialize(bufsize, doc);
  partition(std::max(doc->numCharacters(), 0) - headSize_);
}

DcHeaderDocumentStream::~DcHeaderDocumentStream() {
  // While the field text is read, the block is that same array.
  if (fieldsText_ != currentBlock_) delete[] fieldsText_;
}

int DcHeaderDocumentStream::tokReset() {
  if (!doc_->sourceAvailable()) return -1;
  if (fieldsText_ == nullptr) return resetBody();
  if (currentBlock_ != fieldsText_) delete[] currentBlock_;
  currentBlock_ = fieldsText_;
  blockNum_ = 0;
  span(fieldsText_, fieldsText_ + std::strlen(fieldsText_));
  return 0;
}

bool DcHeaderDocumentStream::fieldsEnd() const {
  return blockNum_ == 0 && fieldsText_ != nullptr && currentBlock_ == fieldsText_ && spanEmpty();
}

int DcHeaderDocumentStream::endFields() {
  fieldsText_ = nullptr;
  return resetBody();
}

int DcHeaderDocumentStream::tokNextCharacter() {
  return fieldsEnd() ? endFields() : DcDocumentStream::tokNextCharacter();
}

int DcHeaderDocumentStream::tokPeekCharacter() {
  return fieldsEnd() ? endFields() : DcDocumentStream::tokPeekCharacter();
}

int DcHeaderDocumentStream::resetBody() {
  loadFirstBlock(headSize_);
  return 0;
}

void DcHeaderDocumentStream::LoadNextBuffer() {
  loadBlock(static_cast<long>(bufsize_) * blockNum_ + headSize_);
}

}  // namespace vandrelle
