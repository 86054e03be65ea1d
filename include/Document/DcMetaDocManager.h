// The manager of a whole index: finds in the root index what type a document has
// and which number inside its storage form, and hands on to a sub-manager.
//
// <root>.idx, one row of 12 bytes a document in number order, big-endian, then a
// trailer (DcTrailer in DcChooser.h):
//
//   offset  size  field
//   0       4     type: the data type
//   4       4     num: number inside the storage form
//   8       4     filenum: number of the file in the file list
//
// <root>.spc stands in for it in an index of one type alone: the type at offset
// 0, the number of documents at offset 4. It is only ever read here.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "Document/DcDocumentManager.h"
#include "Tool/HeapText.h"

namespace vandrelle {

class DcChooser;
class DcFieldParser;
class DcFieldsBinder;
class DcFileListMgr;
class DcMultiDocManager;
class DcOneDocManager;
class DcUserTypes;
class TkStemmer;

DESCRIPTOR_CHILD(DcMetaDocManager, DcDocumentManager);

class DcMetaDocManager : public DcDocumentManager {
  DESCRIBED(DcMetaDocManager)

  static constexpr int kRowSize = 12;
  static constexpr int kUserManagers = 16;

  // Binds to the index `root` (copied). Owns none of the objects; `fp` and
  // `utypes` may be null. Throws _Exception_FileMgr when there is neither
  // <root>.idx nor <root>.spc.
  DcMetaDocManager(const char* root, TkStemmer* stemmer, DcFieldParser* fp, DcUserTypes* utypes);
  ~DcMetaDocManager() override;

  // Throws _Exception_FileMgr when too many documents are alive.
  DcDocument* documentNum(int document_num) override;
  DcDocument* documentName(const char* name) override;
  int numDocuments() override { return numDocuments_; }

  // The file's name, with ":doc" and the place in the file behind it when the
  // file holds more than one document. Null in an index without a file list.
  char* numToName(int docNum) override;
  int nameToNum(const char* name) override;
  long corpusSize() override;

  // Name of the document's file, a new array that the caller owns, or null.
  char* numToFileName(int docNum);

  // Number of the document's file, -1 in an index without rows.
  int docNumToFileNum(long docNum);

  // Makes the first document's number `num` instead of 0.
  void setFirstDoc(long num);

  // Type and number (in the whole index) of the document last asked for; the
  // sub-managers read them while they make it.
  int currentType() const { return currentType_; }
  int currentNum() const { return currentNum_; }
  TkStemmer* stemmer() const { return stemmer_; }

  // With a non-zero argument names carry ":abs" and the number.
  void absname(int on) { absname_ = on; }

  // Stored field values of the document that are to be indexed with its text: a
  // new array that the caller owns, or null.
  char* getFieldsText(int docNum);

 private:
  DcDocument* dispatch(int type, int num);
  void attachConstraintWords(int realDocNum, DcDocument* document);
  std::string userRoot(int type) const;

  int currentType_ = 0;
  int currentNum_ = 0;
  DcUserTypes* userTypes_;
  TkStemmer* stemmer_;
  std::string root_;
  std::unique_ptr<DcFieldParser> newFP_;  // if none is given
  DcFieldParser* fieldParser_;
  int lastFileNum_ = -1;
  HeapAptr<char> lastFileName_;
  int datatype_ = -1;
  int firstNum_ = 0;
  int numDocuments_ = 0;
  bool headers_ = false;
  int voffset_ = 0;
  int absname_ = 0;
  std::unique_ptr<std::ifstream> special_;
  std::unique_ptr<std::ifstream> index_;
  // Destroyed from the last to the first: the sub-managers close their files through
  // helpers of the chooser.
  std::unique_ptr<DcChooser> chooser_;
  std::unique_ptr<DcFieldsBinder> fieldDB_;
  std::unique_ptr<DcFileListMgr> flm_;
  std::unique_ptr<DcDocumentManager> userManagers_[kUserManagers];
  std::unique_ptr<DcMultiDocManager> multiMgr_;
  std::unique_ptr<DcOneDocManager> oneMgr_;
};

}  // namespace vandrelle
