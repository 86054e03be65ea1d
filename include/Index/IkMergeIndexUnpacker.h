// The receivers of a row of an index that is merged into another: they move its
// chunks to their new numbers and take the positions along.
#pragma once

#include "Index/IkDataFileUnpacker.h"
#include "Index/IkDocumentInfo.h"

namespace vandrelle {

class IkDeleter;
class IkMergeDeleter;
class IkProxBinder;
class IkProxCreator;

// What both forms know about the source.
struct IkMergeSource {
  int numChunks = 0;                  // of the source; chunks in rows lie below
  int offset = 0;                     // added to every chunk number
  IkDeleter* deleted = nullptr;       // documents deleted in the source, or null
  IkMergeDeleter* deleter = nullptr;  // documents that the merge leaves out, or null
  IkProxBinder* positions = nullptr;  // of the source, or null
};

// Into a dense row.
class IkMergeIndexUnpacker final : public IkDataFileIntUnpacker {
 public:
  // `total_num` counts the pairs. `prox` may be null; with it `source` must have
  // positions.
  IkMergeIndexUnpacker(const IkMergeSource& source, int rowSize, int* row, int* total_num,
                       IkProxCreator* prox)
      : IkDataFileIntUnpacker(rowSize, row), source_(source), total_num_(total_num), prox_(prox) {}

  // Throws _Exception_Ik for a document outside of the source or of the row.
  void action(int doc_num, int doc_freq, float idf) override;

 private:
  const IkMergeSource& source_;
  int* total_num_;
  IkProxCreator* prox_;
};

// Behind the first `*total_num` pairs of a sparse row.
class IkMergeIndexSparseUnpacker final : public IkDataFileUnpacker {
 public:
  IkMergeIndexSparseUnpacker(const IkMergeSource& source, IkDocumentInfo* start, int* total_num,
                             IkProxCreator* prox)
      : source_(source), start_(start), total_num_(total_num), prox_(prox) {}

  // Throws _Exception_Ik for a document outside of the source.
  void action(int doc_num, int doc_freq, float idf) override;

 private:
  const IkMergeSource& source_;
  IkDocumentInfo* start_;
  int* total_num_;
  IkProxCreator* prox_;
};

}  // namespace vandrelle
