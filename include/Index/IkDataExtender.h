// The rows of documents that were added to an index after it was built. They
// live beside the main files; a row of the main file whose extended flag is set
// goes on here.
#pragma once

namespace vandrelle {

class IkDataFileUnpacker;
class IkDeleter;
class WmWord;

class IkDataExtender {
 public:
  virtual ~IkDataExtender() = default;

  // Words that the main index hasn't got, by word and by number.
  virtual void addWord(WmWord* word) = 0;
  virtual int lookupOffset(WmWord* word, int* offset) = 0;
  virtual int lookupWord(int word_num, WmWord* word) = 0;

  // Adds a term to the row at `offset`.
  virtual void addData(int offset, int doc_num, int doc_freq) = 0;
  virtual void done() = 0;
  virtual void freeze() = 0;

  // The rows, as IkDataFileBinder has them.
  virtual void seek(int offset) = 0;
  virtual int more() = 0;
  virtual int next() = 0;
  virtual int offset() = 0;
  virtual float scale() = 0;
  virtual void scale(float) = 0;

  // Not owned.
  virtual IkDeleter* deleter() { return deleter_; }
  virtual void deleter(IkDeleter* deleter) { deleter_ = deleter; }

  // Continues the main row at the position of seek(), with its scale.
  virtual void unpackRow(IkDataFileUnpacker* functor, float scale) = 0;
  virtual void lastDocToAdd(int) {}

  // The extension of the index `rootname`, read-only; null when it has none. The
  // caller owns it. Throws _Exception_Ik for an index that has one: this version
  // doesn't read extensions.
  static IkDataExtender* Bind(const char* rootname);

 private:
  IkDeleter* deleter_ = nullptr;
};

}  // namespace vandrelle
