// The test for deleted documents. A deleted document stays in the rows and
// keeps its number; whoever decodes a row drops its pairs.
#pragma once

namespace vandrelle {

class IkDeleter {
 public:
  virtual ~IkDeleter() = default;

  // Non-zero for a deleted document. Any number may be asked for.
  virtual int isDeleted(int doc_num) = 0;
  virtual void deleteDocument(int doc_num) = 0;
  virtual int numDeleted() = 0;

  // Changes are complete: brings the counts up to date.
  virtual void done() = 0;
  // Puts what done() completed in the place of the old state.
  virtual void freeze() = 0;
};

}  // namespace vandrelle
