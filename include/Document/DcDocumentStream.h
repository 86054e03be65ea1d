// The word streams of documents: blocks of a document's text go to the lexer.
//
// A text passes through one block of at most `bufsize` bytes; no document is
// ever in memory whole. Each block is offered to the lexer as one run of bytes;
// the byte-wise operations give the same characters one at a time.
#pragma once

#include "Token/TkTokenStream.h"

namespace vandrelle {

class DcAsciiDocument;

class DcDocumentStream : public TkTokenStream {
 public:
  // The whole text of `doc` in blocks of `bufsize` bytes. Owns nothing.
  DcDocumentStream(TkStemmer* stemmer, TkLexer* lexer, DcAsciiDocument* doc, int bufsize);
  ~DcDocumentStream() override;

 protected:
  DcDocumentStream(TkStemmer* stemmer, TkLexer* lexer);

  int tokReset() override;
  int tokEnd() override;
  int tokNextCharacter() override;
  int tokPeekCharacter() override;
  virtual void LoadNextBuffer();

  void initialize(int bufsize, DcAsciiDocument* doc);

  // How `numChars` bytes fall into blocks. A text that is an exact multiple of
  // the block, and longer than one, gets a last block of size 0, so that the end
  // test needs no special case.
  void partition(int numChars);

  // Loads a new block, or the one in hand, with the document's bytes from `offset`.
  void loadFirstBlock(long offset);
  void loadBlock(long offset);

  // Where in the block in hand the next character is.
  int blockCharNum() const { return static_cast<int>(spanNext() - currentBlock_); }

  int numBlocks_ = 1;
  int blockNum_ = 0;  // blocks loaded so far
  int lastBlockSize_ = 0;
  int bufsize_ = 0;
  DcAsciiDocument* doc_ = nullptr;
  char* currentBlock_ = nullptr;

 private:
  void offerBlock();
  void loadIfUsedUp();
};

// Reads field text first, then the body; the bytes of the header are skipped.
// Between the two the lexer sees one zero character, which ends a word.
class DcHeaderDocumentStream : public DcDocumentStream {
 public:
  // Takes over `fieldsText`, an array ended with a NUL, or null.
  DcHeaderDocumentStream(TkStemmer* stemmer, TkLexer* lexer, DcAsciiDocument* doc, int headSize,
                         int bufsize, char* fieldsText);
  ~DcHeaderDocumentStream() override;

 protected:
  int tokReset() override;
  int tokNextCharacter() override;
  int tokPeekCharacter() override;
  void LoadNextBuffer() override;
  virtual int resetBody();

 private:
  bool fieldsEnd() const;
  int endFields();

  int headSize_;
  char* fieldsText_;
};

}  // namespace vandrelle
