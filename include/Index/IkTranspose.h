// The digests of an index: for each document the words that weigh most in it.
//
// File <root>.trp: no header; totalNumChunks digests back to back, each of
// numDigestWords entries, all big-endian:
//
//   offset  size
//        0     4  number of the word in the word table
//        4     2  value: the word's score times 65,535, truncated
//
// The score is tf * idf / length of the document's vector, so a digest is a part
// of the document's unit vector. A digest is sorted by word number, then value;
// unused entries are zero and so come first. An older layout has entries of 5
// bytes (3 of word number); a reader tells by the file's size.
//
// IkTransposeCreator writes the file; IkTransposeCache holds a part of it.
#pragma once

#include <cstdint>
#include <memory>

#include "Tool/ByteOrder.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class DcDocumentManager;
class IkDataFileBinder;
class IkLocalIndexBinder;
class IkTransposeCache;
class IkTransposeLoader;
class KdFileAccessor;
class PrSparseNode;

// A digest handed to a caller: a count and that many entries.
class IkTransposeWords {
 public:
  static constexpr int kEntryBytes = 6;

  explicit IkTransposeWords(int numWords) : numWords_(numWords) {}
  // Bytes that a digest of `n` words needs.
  static int size(int n) { return n * kEntryBytes + 4; }

  int numWords() const { return numWords_; }
  void numWords(int words) { numWords_ = words; }
  int word_num(int i) const { return loadS32(entry(i)); }
  float word_score(int i) const { return static_cast<float>(loadU16(entry(i) + 4)) / 65535.0f; }

  const unsigned char* entry(int i) const { return data() + i * kEntryBytes; }
  unsigned char* entry(int i) { return data() + i * kEntryBytes; }

 private:
  const unsigned char* data() const { return reinterpret_cast<const unsigned char*>(this + 1); }
  unsigned char* data() { return reinterpret_cast<unsigned char*>(this + 1); }

  std::int32_t numWords_;
};

class IkTranspose {
 public:
  static constexpr int kEntryBytes = IkTransposeWords::kEntryBytes;

  IkTranspose();
  IkTranspose(int numDocs, int digestSize);
  ~IkTranspose();
  IkTranspose(const IkTranspose&) = delete;
  IkTranspose& operator=(const IkTranspose&) = delete;

  int numDocs() const { return numDocs_; }
  int digestSize() const { return digestSize_; }

  // Ways to bind; exactly one is used, and misuse throws _Exception_IkTranspose.
  // Maps the whole file, which must have the size that the counts say.
  void map(const char* filename);
  // Keeps `cachesize` digests of the file in memory.
  void cache(const char* filename, int cachesize);
  // Computes digests from the documents.
  void dynamicCache(IkLocalIndexBinder* index, DcDocumentManager* docmgr, int cachesize);
  // Replaces what is in place by a cache on `loader`, which is taken over.
  void externalCache(IkTransposeLoader* loader, int cachesize);

  // Builds the table from the rows and writes `filename`. `sum` holds the lengths
  // of the documents' vectors. `cacheSize` is the number of documents handled in
  // one pass over the rows, 0 for all of them in memory.
  void create(IkDataFileBinder* databinder, KdFileAccessor* keyfile, const float* sum,
              const char* filename, int cacheSize);

  // Puts a word into a document's digest in place of the first entry with the
  // lowest value, if that is below `wordscore`.
  void insert(int doc, int wordnum, std::uint16_t wordscore);

  // How alike two documents are: 0 without a common word, 1 for the same
  // direction; linear in the angle between the digests.
  float dotProduct(int doc1, int doc2);
  // The documents most like `which`: into `node`, which is not owned, or into a
  // new node of `num` results.
  void similar(int which, PrSparseNode* node);
  PrSparseNode* similar(int which, int num);

  // The highest values of a digest, or all of it, by falling value. Made in
  // `place` (IkTransposeWords::size() bytes) if given, else the caller's to free
  // with ::operator delete.
  IkTransposeWords* importantWords(int doc, int numWords, void* place);
  IkTransposeWords* allWords(int doc, void* place);

  void sortByWord(int doc);
  void sortByScore(int doc);

  int wordNum(int doc, int i) { return rawNum(digest(doc) + i * kEntryBytes); }
  std::uint16_t wordValue(int doc, int i) { return rawValue(digest(doc) + i * kEntryBytes); }
  float wordScore(int doc, int i) { return rawScore(digest(doc) + i * kEntryBytes); }

  static int rawNum(const unsigned char* entry) { return loadS32(entry); }
  static void rawNum(unsigned char* entry, int number) { storeS32(entry, number); }
  static std::uint16_t rawValue(const unsigned char* entry) { return loadU16(entry + 4); }
  static void rawValue(unsigned char* entry, std::uint16_t value) { storeU16(entry + 4, value); }
  static float rawScore(const unsigned char* entry) {
    return static_cast<float>(rawValue(entry)) / 65535.0f;
  }

  // Orders of entries, negative, 0 or positive: by word number, then value,
  // rising; by falling value, then rising word number.
  static int CompareByWord(const unsigned char* a, const unsigned char* b);
  static int CompareByValue(const unsigned char* a, const unsigned char* b);

 private:
  void requireSizes() const;
  unsigned char* digest(int doc, int lock = 0);
  // The same, for a change of the digest.
  unsigned char* changeable(int doc);
  void touched(int doc);
  // One pass over all rows for documents `first` to `last`.
  void createRange(IkDataFileBinder* databinder, KdFileAccessor* keyfile, const float* sum,
                   int first, int last);
  void writeTable(const char* filename) const;

  int numDocs_ = 0;
  int digestSize_ = 0;
  unsigned char* data_ = nullptr;  // the whole table, mapped or in memory
  std::unique_ptr<unsigned char[]> memory_;
  std::unique_ptr<SysToolsMapObject> map_;
  std::unique_ptr<IkTransposeLoader> loader_;
  std::unique_ptr<IkTransposeCache> cache_;  // goes before its loader
};

}  // namespace vandrelle
