// One word-sorted source of rows for IkMerger: a temporary file, an index, an
// extension.
#pragma once

#include "Index/IkDocumentInfo.h"
#include "Word.h"

namespace vandrelle {

class IkProxBinder;
class IkProxCreator;

// Each call of word() that answers a word is followed by exactly one call of
// maxElements() and then one of unpack() or unpackSparse(): sources that read
// a stream rely on it.
class IkMergeObject {
 public:
  virtual ~IkMergeObject();

  // Goes to the first word.
  virtual void reset() = 0;

  // The next word, null at the end. Good until the next call.
  virtual const WmWord* word() = 0;

  // An upper bound of the pairs in the current word's row; -1 means as many as
  // the row has.
  virtual int maxElements() { return -1; }

  // Chunks that are deleted in this source.
  virtual int numDeleted() { return 0; }

  // Adds the current word's row to `row`, the frequencies of chunks 0 to
  // `rowSize` - 1, and the number of its pairs to `*total_num`. With a
  // proximity creator the positions are copied too. Throws _Exception_Ik for a
  // chunk that isn't below `rowSize`.
  virtual void unpack(int* row, int rowSize, int* total_num, IkProxCreator* prox) = 0;

  // Appends the current word's pairs behind the first `*total_num` of `start`
  // and raises `*total_num`; there is room for maxElements() more. The default
  // throws _Exception_Ik.
  virtual void unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator* prox);

  // Which number the current word got in the target, -1 if it got none.
  virtual void newWordNumber(int n);

 protected:
  IkProxBinder* proxBinder_ = nullptr;  // owned; null without positions
};

}  // namespace vandrelle
