// The extension of an index in the form in use: a small index of its own, under
// the root <root>.xidx, of the added documents alone.
//
//   file         content
//   .xidx.xw     words: a key file of kind 9 with 5 bytes of data, the position
//                of the word's row as in the word table of an index
//   .xidx.xo     its pointer file
//   .xidx.xd     rows, see IkDataFile.h
//   .xidx.xt     digests as in .trp, by word numbers of .xw; those of documents
//                of the main index are empty
//
// The rows that go on from main rows have the byte 1 and the main row's position,
// 8 hexadecimal digits, in the place of a word. No text has such a word, and they
// stand before all words. The words behind them are those that the main index
// hasn't got.
//
// Terms are collected in temporary files. done() merges them with the rows there
// were, into <root>.xidx.new.*, and freeze() puts those in place.
#pragma once

#include <memory>
#include <vector>

#include "Index/IkDataExtender.h"
#include "Index/IkExtensionWords.h"
#include "Tool/NameManager.h"

namespace vandrelle {

class IkDataFileBinder;
class IkIndexer;
class IkLocalWordTable;
class IkMerger;
class KdFileAccessor;

class IkDataExtenderIndex : public IkDataExtender {
 public:
  // Reads what there is of the extension of `rootname`. `mode` 0 is for reading,
  // else it may be changed. Throws _Exception_Ik for files that are damaged, and
  // what their readers throw.
  IkDataExtenderIndex(const char* rootname, int mode);
  // Changes that weren't frozen are dropped.
  ~IkDataExtenderIndex() override;
  IkDataExtenderIndex(const IkDataExtenderIndex&) = delete;
  IkDataExtenderIndex& operator=(const IkDataExtenderIndex&) = delete;

  static bool exists(const char* rootname);

  void addWord(const WmWord* word) override;
  int lookupOffset(const WmWord* word, int* offset) override;
  int lookupWord(int word_num, WmWord* word) override;
  void addData(int offset, int doc_num, int doc_freq) override;
  void done() override;
  void freeze() override;
  void seek(int offset) override;
  int more() override { return validOffset_; }
  int next() override;
  int offset() override { return curOffset_; }
  float scale() override;
  void scale(float value) override;
  void unpackRow(IkDataFileUnpacker* functor, float scale) override;
  void lastDocToAdd(int last) override { lastDocToAdd_ = last; }

 private:
  class FrozenRows;

  // Opens the files of those three suffixes and stands on the first row.
  void bindFiles(const char* words, const char* offsets, const char* data);
  void countContinuedRows();
  int numRows() const;
  void seekRow(int row);
  // Number of the row at an offset, -1 for none.
  int rowAt(int offset);
  void requireMode() const;
  void requireOpen() const;
  // `row` is the merger's.
  void mergeRows(IkMerger* merger, const std::vector<int>& row, int bufferSize);
  void removeTempfiles();
  void writeDigests();
  [[noreturn]] void damaged() const;

  NameManager name_;  // <root>.xidx
  NameManager main_;  // <root>
  int mode_;
  int lastDocToAdd_ = -1;
  bool completed_ = false;  // between done() and freeze()
  std::unique_ptr<IkIndexer> indexer_;
  IkExtensionWords newWords_;
  std::unique_ptr<KdFileAccessor> keyfile_;
  std::unique_ptr<IkLocalWordTable> xwordtable_;  // on keyfile_
  std::unique_ptr<IkDataFileBinder> xdatafile_;
  int numContinued_ = 0;    // rows that go on from main rows; they come first
  int numFrozenWords_ = 0;  // rows behind them
  int numDocs_ = 0;         // of the index with its extension, after done()
  int row_ = -1;            // the current one
  int curOffset_ = 0;
  int validOffset_ = 0;
};

}  // namespace vandrelle
