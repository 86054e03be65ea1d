// Knows the header of one document format: where it ends, and the named values
// in it. Shared by all documents of the types that use it.
#pragma once

#include <iosfwd>

namespace vandrelle {

class DcHeaderDocument;

class DiHeaderParser {
 public:
  DiHeaderParser() = default;
  virtual ~DiHeaderParser() = default;
  DiHeaderParser(const DiHeaderParser&) = delete;
  DiHeaderParser& operator=(const DiHeaderParser&) = delete;

  // Value of the header, a new array that the caller owns, or null.
  virtual char* getHeader(DcHeaderDocument* doc, const char* header) = 0;

  // Called with the stream at the start of a document that ends at the byte
  // offset `docEnd`, 0 when it runs to the end of the file. Answers the header's
  // size in bytes, 0 for no header. -1 refuses an article; of a file that is one
  // document it says that the whole counts as header.
  virtual int FindEndOfHeaders(std::ifstream* thisFile, long docEnd) = 0;

  // The header text to index, a new array that the caller owns, or null.
  virtual char* getStreamHeaders(DcHeaderDocument* doc) = 0;

  // Non-zero: a document's header bytes are not read as text; the stored fields
  // are read in their place.
  virtual int headerPolicy() = 0;
};

}  // namespace vandrelle
