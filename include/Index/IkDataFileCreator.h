// Writes the row data file (see IkDataFile.h), one row after another.
#pragma once

#include <memory>

#include "Index/IkDocumentInfo.h"
#include "Storage/StStoragePos.h"

namespace vandrelle {

class StAppendBuffer;
class StStorage;

class IkDataFileCreator {
 public:
  IkDataFileCreator();
  ~IkDataFileCreator();  // writes out what waits
  IkDataFileCreator(const IkDataFileCreator&) = delete;
  IkDataFileCreator& operator=(const IkDataFileCreator&) = delete;

  // Makes an empty file, replacing an old one. `bufsize`, in bytes, is the first
  // size of the buffer in which a row is packed, at least 1,024; it grows with
  // the rows and has no influence on the file.
  void create(const char* outfile, int bufsize);

  // Append a row, with `scale` in its header. Dense: `row[i]` is the frequency
  // in chunk i, 0 for none, for `rowSize` chunks. Sparse: `rowSize` pairs in
  // rising order of chunks. A row must have a pair: one without throws
  // _Exception_Ik, as does a row for which memory is out.
  void writeRow(const int* row, int rowSize, float scale);
  void writeRow(const IkDocumentInfo* docInfo, int rowSize, float scale);

  // Where in the file the next row will stand.
  StStoragePos offset() const;

  // Brings the file up to date.
  void flush();

 private:
  void writeRowImpl(const int* row, const IkDocumentInfo* docInfo, int rowSize, float scale);
  void allocateRow();
  void growRow();

  std::unique_ptr<unsigned char[]> row_;  // header and packed pairs, bufsize_ bytes
  int bufsize_ = 0;
  std::unique_ptr<StStorage> storage_;
  std::unique_ptr<StAppendBuffer> output_;
};

}  // namespace vandrelle
