// The words that describe a group of documents: a fixed number of entries, each a
// word number and a score, fed from the digests of the documents.
#pragma once

#include <memory>

namespace vandrelle {

class IkTranspose;

class QlGatherVector {
 public:
  // An entry without a score holds no word, whatever its number says.
  struct Entry {
    int word;
    float score;
  };

  // `numEntries`, 0 or more, is fixed from here on.
  explicit QlGatherVector(int numEntries);
  // Complains on the error stream if the entries were overwritten from outside.
  ~QlGatherVector();
  QlGatherVector(const QlGatherVector&) = delete;
  QlGatherVector& operator=(const QlGatherVector&) = delete;

  int numEntries() const { return numEntries_; }
  int word(int i) const { return entries_[i].word; }
  float score(int i) const { return entries_[i].score; }

  // Adds `score` to every entry of the word, and then puts (word, score) into the
  // lowest entry, the first one on a tie, unless that is above `score`. A word
  // can so stand twice, as long as there is room.
  void addWord(int word, float score);
  // Adds the words of a document's digest.
  void addDoc(IkTranspose* transpose, int doc);
  // Divides the positive scores.
  void divide(float divisor);
  void clear();
  // Takes the digest of a document in place of what is there, sorted by word.
  // Where the vector is the smaller one the digest's first entries count, which
  // are its empty ones.
  void copyFrom(IkTranspose* transpose, int doc);

  // Both keep the order of equals. By word: rising, empty entries last. By score:
  // falling.
  void sortByWord();
  void sortByScore();

  // How alike two directions are: the sum of products over their common words,
  // with 1 for all above it, made linear in the angle. From 0, without a common
  // word, to 1. Vectors must be sorted by word; a word that stands twice in one
  // of them meets its partner once.
  static float dot(const QlGatherVector& a, const QlGatherVector& b);
  static float dot(const QlGatherVector& a, IkTranspose* transpose, int doc);

 private:
  int numEntries_;
  std::unique_ptr<Entry[]> orig_entries_;
  Entry* entries_;  // the same array
};

}  // namespace vandrelle
