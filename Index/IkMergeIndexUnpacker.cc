#include "Index/IkMergeIndexUnpacker.h"

#include "Index/IkDeleter.h"
#include "Index/IkException.h"
#include "Index/IkMergeDeleter.h"
#include "Index/IkProxBinder.h"
#include "Index/IkProxCreator.h"

namespace vandrelle {

namespace {

// The chunk's number in the target, or IkMergeDeleter::kGone. The positions of
// a chunk that goes are passed over: nothing in their file marks its end.
int targetChunk(const IkMergeSource& source, int doc_num, int doc_freq) {
  if (static_cast<unsigned>(doc_num) >= static_cast<unsigned>(source.numChunks)) {
    THROW(Ik, "Document " << doc_num << " is outside of an index of " << source.numChunks
                          << " documents");
  }
  int chunk = doc_num;
  if (source.deleted != nullptr && source.deleted->isDeleted(doc_num)) {
    chunk = IkMergeDeleter::kGone;
  } else if (source.deleter != nullptr) {
    chunk = source.deleter->newChunk(doc_num);
  }
  if (chunk != IkMergeDeleter::kGone) return chunk + source.offset;
  if (source.positions != nullptr) {
    for (int i = 0; i < doc_freq; ++i) source.positions->readnum();
  }
  return IkMergeDeleter::kGone;
}

// The numbers are gaps already and stay as they are.
void copyPositions(const IkMergeSource& source, int doc_freq, IkProxCreator* prox) {
  if (prox == nullptr) return;
  for (int i = 0; i < doc_freq; ++i) prox->writenum(source.positions->readnum());
}

}  // namespace

void IkMergeIndexUnpacker::action(int doc_num, int doc_freq, float) {
  const int chunk = targetChunk(source_, doc_num, doc_freq);
  if (chunk == IkMergeDeleter::kGone) return;
  if (static_cast<unsigned>(chunk) >= static_cast<unsigned>(rowSize_)) {
    THROW(Ik, "IkMergeIndexUnpacker:: document too large for row");
  }
  row_[chunk] += doc_freq;
  ++*total_num_;
  copyPositions(source_, doc_freq, prox_);
}

void IkMergeIndexSparseUnpacker::action(int doc_num, int doc_freq, float) {
  const int chunk = targetChunk(source_, doc_num, doc_freq);
  if (chunk == IkMergeDeleter::kGone) return;
  start_[(*total_num_)++] = {chunk, doc_freq};
  copyPositions(source_, doc_freq, prox_);
}

}  // namespace vandrelle
