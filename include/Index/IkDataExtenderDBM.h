// The extension of an index in the older form, on two hash tables of the disk.
// Indexes no longer get it; it is read and written for programs that keep theirs.
//
//   file       key                    data
//   <root>.xw  a word                 its number, 4 bytes
//              0, number (4 bytes)    the word
//              0                      how many words there are, 4 bytes
//   <root>.xd  offset (4 bytes)       scale (float), then packed pairs as in a row
//                                     of the row data file
//
// All numbers are big-endian. What is added waits in memory until freeze().
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Index/IkDataExtender.h"
#include "Index/IkDocumentInfo.h"
#include "Index/IkExtensionWords.h"
#include "KeyFile.h"

namespace vandrelle {

class FdBag;

class IkDataExtenderDBM : public IkDataExtender {
 public:
  // `mode` 0 is for reading, and the tables must be there; else they are made
  // where they aren't. Throws what FdDBMManager throws, and _Exception_Ik for
  // tables that are damaged, as all operations do.
  IkDataExtenderDBM(const char* rootname, int mode);
  ~IkDataExtenderDBM() override;

  void addWord(const WmWord* word) override;
  int lookupOffset(const WmWord* word, int* offset) override;
  int lookupWord(int word_num, WmWord* word) override;
  void addData(int offset, int doc_num, int doc_freq) override;
  void done() override;
  void freeze() override;
  void seek(int offset) override;
  int more() override { return validBuffer_; }
  int next() override;
  int offset() override { return static_cast<int>(currentOffset_); }
  float scale() override;
  void scale(float value) override;
  void unpackRow(IkDataFileUnpacker* functor, float scale) override;

 private:
  [[noreturn]] static void damaged();
  void requireMode() const;
  // The data of a key, of any size; false if there is no such key.
  static bool fetch(FdBag* bag, const std::string& key, std::string* data);
  bool loadRow(uint32 offset, std::string* row);
  // Stands on the row at a place of offsets_, on none behind the last.
  void seekRow(std::size_t place);

  int mode_;
  int numWords_ = 0;  // in wordbag_
  std::unique_ptr<FdBag> wordbag_;
  std::unique_ptr<FdBag> databag_;
  IkExtensionWords newWords_;
  std::map<uint32, std::vector<IkDocumentInfo>> tmpbag_;  // added since done()
  std::map<uint32, std::string> changedRows_;             // between done() and freeze()
  std::vector<uint32> offsets_;                           // of all rows, in order
  std::size_t place_ = 0;                                 // of the current row, in offsets_
  std::string buffer_;                                    // the current row
  int validBuffer_ = 0;
  uint32 currentOffset_ = 0;
};

}  // namespace vandrelle
