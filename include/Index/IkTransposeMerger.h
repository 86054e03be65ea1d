// Writes the digests of an index that was merged from others over different
// documents. The weight of a word in a document changes with the collection, so
// the digests are made anew; but a document's words stand in the rows of one source
// only, and each source's rows are read for its own documents alone. The cost is
// thus linear in the sources, and the memory is that of kRange documents and a
// number for each word.
//
// IkIndex::mergeTranspose() is the cheaper way that keeps the old weights.
#pragma once

#include <vector>

#include "Index/IkLocalIndexBinder.h"
#include "Storage/StAppendBuffer.h"
#include "Storage/StFileStorage.h"

namespace vandrelle {

class IkTransposeMerger {
 public:
  // Documents whose digests are made in one pass over the rows of their source.
  static constexpr int kRange = 500000;

  // `root`: the merged index, of which all is there but <root>.trp. `range`, at
  // least 1: documents of one pass. Throws, as all operations do, _Exception_Ik and
  // what the readers and storages throw.
  explicit IkTransposeMerger(const char* root, int range = kRange);
  IkTransposeMerger(const IkTransposeMerger&) = delete;
  IkTransposeMerger& operator=(const IkTransposeMerger&) = delete;

  // The next source, whose document 0 is number `first` of the merged index.
  // `newWordNumbersFile` is what the merge wrote for it (see IkMergeIndex.h).
  void addIndex(const char* source, const char* newWordNumbersFile, int first);

  // Writes what remains. To be called once, at the end.
  void done();

 private:
  struct Source;
  void addRange(Source* source, int first, int begin, int end);
  // Digests without words up to document `doc`, which isn't among them.
  void fillUpTo(int doc);

  int range_;
  IkLocalIndexBinder target_;
  std::vector<float> idfs_;  // by word number of the target
  std::vector<unsigned char> digest_;
  int written_ = 0;  // digests
  StFileStorage storage_;
  StAppendBuffer output_;
};

}  // namespace vandrelle
