// The interfaces by which file names become numbered documents, before any word
// is read: DcPartialIndexCreator for one storage form, DcIndexCreator for a
// whole index. The class that applications use is DcMetaIndexCreator.
#pragma once

#include <cstdint>

namespace vandrelle {

class DcDocumentManager;
class DcFieldParser;
class TkStemmer;

// A run of document numbers, both ends included.
struct DocPair {
  int32_t low = -1;
  int32_t high = -1;

  bool bad() const { return low == -1; }
};

class DcPartialIndexCreator {
 public:
  virtual ~DcPartialIndexCreator() = default;

  // Adds a file (or, where the creator can, a directory with all below it) and
  // answers how many documents came of it. Bad input is logged and counts 0.
  virtual int Add(const char* fileName) = 0;

  // Ends the adding and brings what was written to disk.
  virtual void DoneAddingDocs() = 0;
};

class DcIndexCreator : public DcPartialIndexCreator {
 public:
  // Takes a file out of the file list and answers the documents that it had; a
  // bad() pair if it is not there. Their numbers stay taken.
  virtual DocPair Remove(const char* fileName) = 0;

  virtual int numDocuments() = 0;

  // A new manager over the finished index, owned by the caller.
  virtual DcDocumentManager* getDocManager(TkStemmer* stemmer, DcFieldParser* fieldParser) = 0;
};

}  // namespace vandrelle
