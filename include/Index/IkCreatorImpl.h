// The base of every object that writes an index. It holds the options, reads
// documents into addTerm(), and compiles a merger's words and rows into the
// files of an index; idf, the lengths of the documents' vectors and their norms
// are computed on the way, in one pass over the rows.
//
//   file                    content
//   <root>.dat              rows, see IkDataFile.h
//   <root>.key, .ptr        the word table, see KdMmapCreator.h; its data are the
//                           row's position in .dat, see IkLocalWordTable.h
//   <root>.idf              one byte a word, see IkIdfCreator.h
//   <root>.prx, .prx.map    positions, only with recordProximity
//   <root>.sum              totalNumChunks big-endian floats: the Euclidean length
//                           of each chunk's vector of tf * idf, 0 without terms
//   <root>.norm             totalNumChunks bytes: the coded norm, 0 without terms
//   <root>.norm.raw         totalNumChunks big-endian floats: the chunk's length
//                           in characters, one separator a word counted in
//
// A chunk is what a retriever calls a document: one document of the manager.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Index/IkIndexInfo.h"
#include "Index/IkSimilarity.h"
#include "Tool/NameManager.h"
#include "Word.h"

namespace vandrelle {

class DcDocument;
class DcDocumentManager;
class IkMerger;
class TkWordPairHash;

class IkCreatorImpl {
 public:
  explicit IkCreatorImpl(const char* rootname);
  virtual ~IkCreatorImpl();
  IkCreatorImpl(const IkCreatorImpl&) = delete;
  IkCreatorImpl& operator=(const IkCreatorImpl&) = delete;

  // Reads documents `first_doc` to `last_doc` into addTerm(). A `last_doc` of 0,
  // or one past the end, means the last document. Chunk numbers are document
  // numbers.
  virtual void addDocuments(DcDocumentManager* docs, int first_doc, int last_doc);
  // Step of the progress lines, 0 to 1; 0 means none.
  virtual void showProgress(float freq);
  // Finishes the index.
  virtual void makeIndex() = 0;
  // Counts one occurrence of `word` in `chunk`, at word number `pos` of it.
  virtual void addTerm(const WmWord* word, int chunk, int pos) = 0;
  // Writes the files of the index `name` from the merger's words and rows; the
  // caller writes <root>.info afterwards. Throws _Exception_Ik, and what the
  // writers of the files throw.
  virtual void compileIndex(NameManager* name, IkMerger* merger);

  void info(const IkIndexInfo* info) { info_ = *info; }
  const IkIndexInfo& info() const { return info_; }
  int numDigestWords() const { return info_.numDigestWords; }
  void numDigestWords(int words) { info_.numDigestWords = words; }
  float minDocumentLength() const { return info_.minDocumentLength; }
  void minDocumentLength(float length) { info_.minDocumentLength = length; }
  int similarityVersion() const { return info_.similarityVersion; }
  void similarityVersion(int version) { info_.similarityVersion = version; }
  int transposeCache() const { return transposeCache_; }
  void transposeCache(int lines) { transposeCache_ = lines; }
  int createSumfile() const { return createSumfile_; }
  void createSumfile(int create) { createSumfile_ = create; }
  int createNormfile() const { return createNormfile_; }
  void createNormfile(int create) { createNormfile_ = create; }
  int recordProximity() const { return recordProximity_; }
  void recordProximity(int record) { recordProximity_ = record; }
  int hashbits() const { return hashbits_; }
  void hashbits(int bits) { hashbits_ = bits; }

 protected:
  // A file of big-endian floats. Throws _Exception_IkIO.
  static void writeFloats(const std::string& filename, const std::vector<float>& values);

  NameManager name_;
  IkIndexInfo info_;
  IkSimilarity sim_;
  int transposeCache_ = 0;
  int createSumfile_ = 1;
  int createNormfile_ = 1;
  int recordProximity_ = 1;
  int hashbits_ = 0;  // bits of the word-pair hash; 0: no word pairs
  float progress_freq_ = 0;
  int totalWordCount_ = 0;  // terms read by addDocuments

 private:
  struct Compilation;

  // Reads one document's words; `pairHash` is null without word pairs.
  void addDocument(DcDocumentManager* docs, int chunk, TkWordPairHash* pairHash);
  void logDocument(DcDocument* doc, int terms);
  // Logs one line for all steps that `fraction` has passed since the last.
  void displayProgress(float fraction, float* progress) const;
  void compileWord(IkMerger* merger, Compilation* files);
  // df and the sum of frequencies of the current row.
  void calculateIdf(const IkMerger& merger, const int* row, float* idf, std::int64_t* freq) const;
  void calculateWeights(const IkMerger& merger, const int* row, float idf,
                        Compilation* files) const;
  void finishSums(std::vector<float>* sums, const std::string& filename) const;
  void finishNorms(const std::vector<float>& norms, const std::string& filename) const;
};

}  // namespace vandrelle
