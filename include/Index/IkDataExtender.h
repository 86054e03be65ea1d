// The rows of documents that were added to an index after it was built. They
// live beside the main files; a row of the main file whose extended flag is set
// goes on here.
//
// A row is named by its offset. A row that goes on here has the offset of the
// main row; one of a word that the main index hasn't got has the word's number
// here, counted from 0, with the top bit set. Rows follow each other in rising
// order of offsets, without sign; numbers of words may change in freeze().
//
// Changes are made in this order: addWord() and addData(), rising by document;
// done(), after which all rows can be read and their scales be set; freeze().
#pragma once

namespace vandrelle {

class IkDataFileUnpacker;
class IkDeleter;
class WmWord;

class IkDataExtender {
 public:
  static constexpr unsigned kNewWord = 0x80000000u;

  virtual ~IkDataExtender() = default;

  // Adds a word that the main index hasn't got, nor the extension yet.
  virtual void addWord(const WmWord* word) = 0;
  // Non-zero if the extension has the word; `*offset` is then that of its row.
  virtual int lookupOffset(const WmWord* word, int* offset) = 0;
  // Non-zero if there is a word with the number, which is built in `word`, a
  // buffer of 65 bytes.
  virtual int lookupWord(int word_num, WmWord* word) = 0;

  // Adds `doc_freq` occurrences of a term to the row at `offset`.
  virtual void addData(int offset, int doc_num, int doc_freq) = 0;
  // What was added can be read from now on.
  virtual void done() = 0;
  // Puts what done() completed in the place of the old state.
  virtual void freeze() = 0;

  // The rows, as IkDataFileBinder has them. After seek() to an offset without a
  // row there is none: more() is 0 and unpackRow() does nothing. Setting a scale
  // needs done() before it.
  virtual void seek(int offset) = 0;
  virtual int more() = 0;
  virtual int next() = 0;  // non-zero while there is a row
  virtual int offset() = 0;
  virtual float scale() = 0;
  virtual void scale(float) = 0;

  // Not owned.
  virtual IkDeleter* deleter() { return deleter_; }
  virtual void deleter(IkDeleter* deleter) { deleter_ = deleter; }

  // Hands the pairs of live documents of the current row on, with `scale`.
  virtual void unpackRow(IkDataFileUnpacker* functor, float scale) = 0;
  // The number of the last document of the index with its extension.
  virtual void lastDocToAdd(int) {}

  // The extension of the index `rootname`, for reading with `mode` 0, else for
  // changes; null when it has none. The caller owns it. Throws what the readers
  // of its files throw.
  static IkDataExtender* Bind(const char* rootname, int mode);

 private:
  IkDeleter* deleter_ = nullptr;
};

}  // namespace vandrelle
