// The k-way merge behind every finished index: word-sorted sources of rows
// become one stream of words, each with its combined row.
//
//   IkMerger merger(n);
//   for (...) merger.mergeObject(i, source);       // in chunk order
//   merger.row(buffer); merger.rowSize(chunks);
//   for (merger.reset(); merger.more(); merger.next()) ...
//
// The waiting sources stand in a heap by (word, source number), so a word costs
// a logarithm of the sources, and those with equal words come out in chunk order.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Index/IkDocumentInfo.h"
#include "Index/IkMergeObject.h"
#include "Word.h"

namespace vandrelle {

class IkMerger {
 public:
  explicit IkMerger(int numMO);
  ~IkMerger();
  IkMerger(const IkMerger&) = delete;
  IkMerger& operator=(const IkMerger&) = delete;

  // Puts source number `i`, 0 <= i < numMO, in place and takes it over. Sources
  // with lower numbers hold lower chunks.
  void mergeObject(int i, IkMergeObject* obj);

  // The row buffer: `rowSize` integers, the number of chunks of the target. Not
  // owned. It holds a dense row (element c is chunk c's frequency) or at most
  // rowSize / 2 pairs, see sparseSize().
  void row(int* row) { row_ = row; }
  void rowSize(int size) { rowSize_ = size; }

  // Sources copy the words' positions there; taken over. Null: no positions.
  void proxCreator(IkProxCreator* creator);

  // Reads the first word of every source and goes to the first word of all.
  void reset();
  bool more() const { return word_ != nullptr; }
  // Goes to the next word and fills the row; 0 at the end. Throws _Exception_Ik
  // for a chunk that isn't below the row's size.
  int next();
  // The current word, null at the end. Good until the next next().
  const WmWord* word() const { return word_; }

  // -1 if the current row is dense, else the number of IkDocumentInfo pairs in
  // the row buffer, in rising chunk order; 0 for a word that lost all its chunks.
  int sparseSize() const { return numPairs_; }

  // Sum of the sources' deleted chunks.
  int numDeleted() const { return numDeletedDocs_; }

 private:
  // A source and the word it stands at.
  struct IkMergeData {
    std::unique_ptr<IkMergeObject> object;
    const WmWord* word = nullptr;
    std::uint64_t prefix = 0;
  };

  bool before(int a, int b) const;
  // Moves source `i` to its next word and into the heap unless it is used up.
  void advance(int i);
  int popHead();
  void fillRow();

  int* row_ = nullptr;
  int rowSize_ = 0;
  int numPairs_ = -1;
  std::unique_ptr<IkProxCreator> proxCreator_;
  std::vector<IkMergeData> mergeData_;
  std::vector<int> heap_;        // waiting sources, the first in order on top
  std::vector<int> equalWords_;  // sources that hold the current word, in order
  std::vector<int> passedOver_;  // row for what is read and not used; empty until then
  int numDeletedDocs_ = 0;
  const WmWord* word_ = nullptr;
  unsigned char wordbuf_[256];
  int wordNum_ = 0;  // number of the next word with a row that isn't empty
};

}  // namespace vandrelle
