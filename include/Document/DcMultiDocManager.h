// Serves the articles of files that a separator has cut. Articles of one file
// share a stream, and the stream last used stays open for the next article.
//
// <root>_mlt.idx, read at a stride of 12 bytes, big-endian:
//
//   offset  size  field
//   0       4     byte offset of the article in its file
//   4       4     article size in bytes
//   8       4     header size in bytes
//
// The third integer is only there for types with a header parser, while the
// stride stays 12 for all: for other types only the first article of a run is
// found where it lies. Existing indexes depend on that.
#pragma once

#include "Document/DcFileDocManager.h"

namespace vandrelle {

struct HelperStruct;

DESCRIPTOR_CHILD(DcMultiDocManager, DcFileDocManager);

class DcMultiDocManager : public DcFileDocManager {
  DESCRIBED(DcMultiDocManager)

  static constexpr int kRecordSize = 12;

  // `root`: the index's root name with "_mlt". Without <root>.idx every article
  // reads as -1.
  DcMultiDocManager(const char* root, TkStemmer* stemmer, DcMetaDocManager* mmgr,
                    DcChooser* chooser);

  // Called by DcMetaDocManager alone, as in DcOneDocManager. Throws
  // _Exception_FileMgr when 20 files have live documents.
  DcDocument* documentNum(int document_num) override;

 protected:
  void DoneWithDoc(int docNum) override;
  int numArticles() override { return countRecords(); }

 private:
  int ArticleStart(int document_num);
  int numBytes(int document_num);
  int headSize(int document_num);
  std::ifstream* getCorrectStream(int filenum, const char* fileName, DiFileHandler* handler);
  HelperStruct* getCorrectHelpers();

  StreamRecord* last_ = nullptr;
  int firstUnused_ = 0;
  HelperStruct* lastHelpers_ = nullptr;
  int lastFileNum_ = -1;
  bool sameFile_ = false;
};

}  // namespace vandrelle
