// Where the lines of an IkTransposeCache come from and go to: a digest file, one
// of the older layout, or the document itself.
#pragma once

#include <memory>
#include <string>

namespace vandrelle {

class DcDocumentManager;
class IkDataFileBinder;
class IkWordTable;
class StStorage;

class IkTransposeLoader {
 public:
  virtual ~IkTransposeLoader();
  // Puts the digest of `doc` at `place`: digestSize entries of 6 bytes. Answers
  // whether it could.
  virtual int load(int doc, unsigned char* place) = 0;
  // Stores the digest at `data` as that of `doc`.
  virtual int flush(const unsigned char* data, int doc) = 0;
};

// Digests of a file, see IkTranspose.h. Documents past its end throw
// _Exception_IkTranspose.
class IkTransposeLoaderFile : public IkTransposeLoader {
 public:
  // An `entrySize` of 0 means 6. A writable file is created if it isn't there.
  IkTransposeLoaderFile(const char* filename, int digestSize, int writable, int entrySize);
  ~IkTransposeLoaderFile() override;

  int load(int doc, unsigned char* place) override;
  int flush(const unsigned char* data, int doc) override;
  // Makes the file hold `numDocs` empty digests and nothing else.
  void zeroFill(int numDocs);

 protected:
  int lineBytes() const { return digestSize_ * entrySize_; }

  int digestSize_;
  int entrySize_;
  int writable_;
  std::unique_ptr<StStorage> storage_;
};

// The older layout: entries of 3 bytes of word number and 2 of value.
class IkOldTransposeLoader : public IkTransposeLoaderFile {
 public:
  static constexpr int kEntryBytes = 5;
  IkOldTransposeLoader(const char* filename, int digestSize);
  // Widens the entries in place, from the last to the first.
  int load(int doc, unsigned char* place) override;
};

// Computes a digest from the document's text, the word table and the rows: the
// same one that the creation of the table gives. None of the three is owned.
class IkTransposeLoaderFake : public IkTransposeLoader {
 public:
  IkTransposeLoaderFake(DcDocumentManager* docmgr, IkWordTable* wordTable,
                        IkDataFileBinder* matrixData, int digestSize);
  int load(int doc, unsigned char* place) override;
  int flush(const unsigned char* data, int doc) override;

 private:
  DcDocumentManager* docmgr_;
  IkWordTable* wordTable_;
  IkDataFileBinder* matrixData_;
  int digestSize_;
};

}  // namespace vandrelle
