// A document: the unit of retrieval. Everywhere in an index it is one number.
//
// A document is made by a document manager for one use and deleted by whoever
// asked for it; that releases the source file it reads. Its word stream holds a
// pointer to it, so the document outlives the stream. The lexer of a stream is
// shared by all documents of one type: never read two of their word streams
// alternately.
#pragma once

#include "Hierarchy.h"

namespace vandrelle {

class FdStream;
class WmWord;

// One special word waiting to be yielded. Owns the word.
struct DcDocumentSpecialWordListNode {
  DcDocumentSpecialWordListNode(WmWord* word, DcDocumentSpecialWordListNode* following)
      : wptr(word), next(following) {}
  ~DcDocumentSpecialWordListNode();
  DcDocumentSpecialWordListNode(const DcDocumentSpecialWordListNode&) = delete;
  DcDocumentSpecialWordListNode& operator=(const DcDocumentSpecialWordListNode&) = delete;

  WmWord* wptr;  // made by WmWord::Create or an equal allocation of num_bytes()
  DcDocumentSpecialWordListNode* next;
};

DESCRIPTOR_ROOT(DcDocument);

class DcDocument {
  DESCRIBED_ROOT(DcDocument)

  DcDocument() = default;
  virtual ~DcDocument();
  DcDocument(const DcDocument&) = delete;
  DcDocument& operator=(const DcDocument&) = delete;

  // Number of the document in its index.
  virtual int documentNum() const = 0;

  // The external name, a new array that the caller owns; by default the decimal
  // form of documentNum(). Null when the index keeps no names.
  virtual char* documentName() const;

  // The words to index: first the special words, the last added foremost, then
  // the words of the text. A new stream that the caller owns and must reset()
  // before use; its key is a WmWord. Null for a document without a text stream
  // and without special words.
  FdStream* words();

  // Adds a word of strlen(p) letters, at most 64, kept as they stand (no
  // folding). Copies `p`. Throws _Exception_WmWordTooLarge beyond that.
  void addSpecialWord(const char* p);

 protected:
  virtual FdStream* original_words() = 0;

 private:
  DcDocumentSpecialWordListNode* swl_ = nullptr;
};

}  // namespace vandrelle
