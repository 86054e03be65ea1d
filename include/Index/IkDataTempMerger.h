// Builds an index out of temporary files, with a finished index before them if
// wanted.
#pragma once

#include <memory>
#include <vector>

#include "Index/IkCreatorImpl.h"
#include "Index/IkMergeObject.h"

namespace vandrelle {

class IkDataTempMerger : public IkCreatorImpl {
 public:
  explicit IkDataTempMerger(const char* rootname);
  ~IkDataTempMerger() override;

  // Sources go in chunk order. An index keeps its chunk numbers and adds its
  // counts of documents.
  void addIndex(const char* rootname);
  // A temporary file that can't be opened is passed over. Its positions are in
  // the file of the same name with ".prx" for ".tmp".
  void addTempFile(const char* srcfile);
  // The last document of the temporary files.
  void lastTempfileDoc(int lastDoc) { info_.totalNumChunks = lastDoc + 1; }

  void makeIndex() override;

  // Throws _Exception_Fatal: words come from the sources.
  void addTerm(const WmWord* word, int chunk, int pos) override;

 private:
  std::vector<std::unique_ptr<IkMergeObject>> objectList_;
};

}  // namespace vandrelle
