// Base of the managers whose documents lie in files: a small index of fixed-size
// records, and a table of the source files that are open.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "Document/DcDocumentManager.h"

namespace vandrelle {

class DcChooser;
class DcMetaDocManager;
class DiFileHandler;
class TkStemmer;

// One open source file.
struct StreamRecord {
  std::ifstream* strm = nullptr;
  int filenum = 0;
  int numDocs = 0;  // live documents that read it
  DiFileHandler* handler = nullptr;

  // Closes the stream through its handler and empties the record.
  void zero();
};

DESCRIPTOR_CHILD(DcFileDocManager, DcPartialDocumentManager);

class DcFileDocManager : public DcPartialDocumentManager {
  DESCRIBED(DcFileDocManager)
  ~DcFileDocManager() override;

 protected:
  friend class DcFileHeaderDocument;  // tells its death through DoneWithDoc

  static constexpr int kStreams = 20;
  static constexpr int kBlockSize = 4096;

  // `indexBlock`: bytes of one record. Owns none of the objects.
  DcFileDocManager(TkStemmer* stemmer, DcMetaDocManager* mmgr, DcChooser* chooser,
                   std::int16_t indexBlock);

  // A document (number in the whole index) has died; its source can be released.
  virtual void DoneWithDoc(int docNum) = 0;

  // Records in the index.
  virtual int numArticles() = 0;

  // Size of the index over the record size, 0 without an index.
  int countRecords() const;

  TkStemmer* stemmer_;
  std::int16_t indexBlock_;
  bool headers_ = false;
  DcMetaDocManager* mmgr_;
  StreamRecord streamArr_[kStreams];
  int bufsize_ = kBlockSize;
  std::ifstream* index_ = nullptr;
  DcChooser* chooser_;
  int numDocuments_ = 0;
};

}  // namespace vandrelle
