// The deletions of an index, <root>.xk: one bit a document. Big-endian:
//
//   offset                      size
//        0                         4  totalNumDocs
//        4                         4  numDeleted
//        8  (totalNumDocs + 7) / 8    document n is bit 7 - n % 8 of byte n / 8
//
// A vector that is being changed lives in a shadow, <root>.xk.tmp, which freeze()
// moves to its place. Readers see the former deletions until then.
#pragma once

#include "Index/IkDeleter.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class IkDeleterVector : public IkDeleter {
 public:
  // A vector without deletions for `totalNumDocs` documents, in a new shadow. The
  // caller owns it. Throws _Exception_IkIO when the shadow can't be written.
  static IkDeleterVector* Create(const char* rootname, int totalNumDocs, int readOnly);
  // The vector of the index `rootname`. For reading, `totalNumDocs` isn't looked
  // at, and an index without a vector answers null. For changes, the shadow
  // begins as a copy with room for at least `totalNumDocs` documents, or as
  // Create() makes it. The caller owns it. Throws _Exception_Ik for a damaged
  // file.
  static IkDeleterVector* Bind(const char* rootname, int totalNumDocs, int readOnly);

  // Changes that weren't frozen are dropped.
  ~IkDeleterVector() override;

  int isDeleted(int doc_num) override;
  // A second deletion of a document counts nothing. Throws _Exception_Ik for a
  // vector that is read-only and for a number above that of documents.
  void deleteDocument(int doc_num) override;
  int numDeleted() override { return numDeleted_; }
  // Stores the count in the file.
  void done() override;
  // Moves the shadow to its place; the vector is read-only then.
  void freeze() override;

  // Makes room for more documents. Only on a vector that may be changed.
  void grow(int totalNumDocs);

 private:
  explicit IkDeleterVector(const char* rootname) : name_(rootname) {}
  void map(const char* suffix, int mode);
  // Brings the shadow to the size for `totalNumDocs`, with the counts in it.
  void resizeShadow(int totalNumDocs);

  NameManager name_;
  SysToolsMapObject map_;
  unsigned char* vector_ = nullptr;  // the mapped file
  int readOnly_ = 1;
  int totalNumDocs_ = 0;
  int numDeleted_ = 0;
  int fileSize_ = 0;
};

}  // namespace vandrelle
