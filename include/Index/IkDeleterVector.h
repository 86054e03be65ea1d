// The deletions of an index, <root>.xk: one bit a document. Big-endian:
//
//   offset                      size
//        0                         4  totalNumDocs
//        4                         4  numDeleted
//        8  (totalNumDocs + 7) / 8    document n is bit 7 - n % 8 of byte n / 8
#pragma once

#include <memory>

#include "Index/IkDeleter.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class IkDeleterVector : public IkDeleter {
 public:
  // The vector of the index `rootname`, for reading; null when the index has
  // none. The caller owns it. Throws _Exception_Ik for a damaged file.
  static IkDeleterVector* Bind(const char* rootname);

  int isDeleted(int doc_num) override;
  // Throws _Exception_Ik: the vector is for reading.
  void deleteDocument(int doc_num) override;
  int numDeleted() override { return numDeleted_; }
  void done() override {}
  void freeze() override {}

 private:
  IkDeleterVector() = default;
  void open(const char* filename);

  SysToolsMapObject map_;
  const unsigned char* vector_ = nullptr;  // the mapped file
  int totalNumDocs_ = 0;
  int numDeleted_ = 0;
  int fileSize_ = 0;
};

}  // namespace vandrelle
