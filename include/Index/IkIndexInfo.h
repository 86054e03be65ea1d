// The header of an index, <root>.info: the counts and the options that its
// other files were built with. Every reader of an index starts here.
//
//   offset  size
//        0     4  numTerms           words in the word table
//        4     4  totalNumChunks     documents, deleted ones included
//        8     4  numDigestWords     words kept per document digest
//       12     4  mergeMaxWords
//       16     4  mergeMaxDocs
//       20     4  bufferSize         bytes, first size of the row work buffer
//       24     4  minDocumentLength  float, characters
//       28     4  similarityVersion
//       32     4  numDeletedChunks   missing in older files: 0
//
// All big-endian.
#pragma once

#include "Tool/ByteOrder.h"

namespace vandrelle {

struct IkIndexInfo {
  int32 numTerms = 0;
  int32 totalNumChunks = 0;
  int32 numDigestWords = 0;
  int32 mergeMaxWords = 0;
  int32 mergeMaxDocs = 0;
  int32 bufferSize = 0;
  float minDocumentLength = 0;
  int32 similarityVersion = 0;
  int32 numDeletedChunks = 0;

  // Takes all fields from the file. Throws _Exception_IkIO, with no field
  // changed, when it can't be read or ends within a field.
  void read(const char* filename);

  // Replaces the file. Throws _Exception_IkIO.
  void write(const char* filename) const;
};

}  // namespace vandrelle
