// What a caller may leave out of a merge of indexes: documents and words.
#pragma once

namespace vandrelle {

class WmWord;

// Which documents of one source go. The numbers of those that stay must rise
// with the old ones.
class IkMergeDeleter {
 public:
  // What newChunk() answers for a document that goes.
  static constexpr int kGone = -1;

  virtual ~IkMergeDeleter() = default;

  // The new number of a document, or kGone.
  virtual int newChunk(int chunk) = 0;
  // How many go. A negative number leaves that many numbers unused behind the source.
  virtual int numDeletedChunks() { return 0; }
};

class IkMergeIndexExcluder {
 public:
  virtual ~IkMergeIndexExcluder() = default;

  // Non-zero to leave the word out.
  virtual int excludes(const WmWord* word) = 0;
};

}  // namespace vandrelle
