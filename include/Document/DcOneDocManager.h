// Serves files that hold one document each. Every live document holds one of the
// 20 streams, also when two of them read the same file.
//
// <root>_one.idx, 8 bytes a document, big-endian:
//
//   offset  size  field
//   0       4     size of the file in bytes when it was added
//   4       4     header size in bytes; -1 when the type has no header parser,
//                 the file size when the parser found no end
#pragma once

#include "Document/DcFileDocManager.h"

namespace vandrelle {

DESCRIPTOR_CHILD(DcOneDocManager, DcFileDocManager);

class DcOneDocManager : public DcFileDocManager {
  DESCRIBED(DcOneDocManager)

  static constexpr int kRecordSize = 8;

  // `root`: the index's root name with "_one". Throws _Exception_Fatal when
  // <root>.idx cannot be opened.
  DcOneDocManager(const char* root, TkStemmer* stemmer, DcMetaDocManager* mmgr, DcChooser* chooser);

  // Called by DcMetaDocManager alone: number in the whole index and type are
  // read back from it. Throws _Exception_FileMgr when all streams are taken.
  DcDocument* documentNum(int document_num) override;

 protected:
  void DoneWithDoc(int docNum) override;
  int numArticles() override { return countRecords(); }

 private:
  std::ifstream* GetCorrectStream(int filenum, const char* fileName, DiFileHandler* handler);
};

}  // namespace vandrelle
