// A document manager over one text, whose documents are windows of segments:
// sentences or paragraphs. The text is scanned once, when the manager is made;
// only the offsets of the boundaries are kept.
//
// n boundaries enclose n - 1 segments. Windows may be of several segments and
// may overlap. A document from here is independent of the manager's text, but
// uses its stemmer and lexer.
#pragma once

#include <memory>

#include "Document/DcDocumentManager.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"

namespace vandrelle {

class DcAsciiDocument;
class FdFastTable;
class TkLexer;
class TkStemmer;

DESCRIPTOR_CHILD(DcSegmentManager, DcDocumentManager);

class DcSegmentManager : public DcDocumentManager {
  DESCRIBED(DcSegmentManager)

  ~DcSegmentManager() override;

  // A new DcSimpleDocument, named by numToName() or "(unknown)" when there is no
  // document behind the manager. Null for a number out of range or when the
  // document's source is gone.
  DcDocument* documentNum(int num) override;
  // Takes the number that follows the first colon of the name. A name made by
  // numToName() has letters there, which count as 0. Null without a colon.
  DcDocument* documentName(const char* name) override;
  int numDocuments() override;
  // The document's name, ":sent" or ":para", and the number; "unknown" without a
  // document.
  char* numToName(int num) override;
  int nameToNum(const char*) override { return -1; }

 protected:
  DcSegmentManager();

  // Comes first in the constructor of a concrete class. Either `doc` or `buf` is
  // null; nothing is owned, and text, stemmer and lexer must outlive the manager.
  // `numSegments` make a window, at least 1; windows start `slideSize` segments
  // apart, 0 for `numSegments`; with `slideType` 0 the last window is the last
  // full one, otherwise windows start up to the last segment. `flagType` is the
  // TkBoundary that ends a segment.
  void initialize(TkStemmer* stemmer, TkLexer* lexer, DcAsciiDocument* doc, const char* buf,
                  int numSegments, int slideSize, int slideType, int flagType);

  // Scans the text; comes after initialize(). Calls insertNextSegment().
  void scanText();

  // The document's text without its header, ended with a zero; null for an empty
  // document or when the source is gone.
  HeapAptr<char> ReadBuffer();
  void buildTable(const char* place, int numch);

  // Reads on in the `numch` bytes at `place` from `pos`, which is below `numch`,
  // moves `pos` and enters the boundary found. This form asks the lexer.
  virtual void insertNextSegment(const char* place, int& pos, int numch);
  void insertBoundary(int offset);

 private:
  int headSize() const;

  DcAsciiDocument* doc_ = nullptr;
  const char* buf_ = nullptr;
  int32 slideType_ = 0;
  int32 slideSize_ = 0;
  int32 numSegments_ = 1;
  uint32 segmentNum_ = 0;  // boundaries found so far
  std::unique_ptr<FdFastTable> index_;
  TkStemmer* stemmer_ = nullptr;
  TkLexer* lexer_ = nullptr;
  int32 flagType_ = 0;
  int32 textSize_ = 0;  // bytes, without the document's header
};

}  // namespace vandrelle
