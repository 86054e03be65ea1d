// Adds files that a separator cuts into articles, each a document. The index is
// drawn in DcMultiDocManager.h.
#pragma once

#include "Document/DcFileIndexCreator.h"

namespace vandrelle {

class DcMultiDocIndexCreator : public DcFileIndexCreator {
 public:
  // `info` 2 binds to the existing index. Throws _Exception_FileInd.
  DcMultiDocIndexCreator(const char* root, DcChooser* helpt, DcMetaIndexCreator* mcr, int info);

  int Add(const char* fileName) override;

 protected:
  void setMembers() override;

 private:
  int EditIndex(const char* fileName, std::ifstream* thisFile);
  void addArticle(const char* fileName, std::ifstream* thisFile, long filepos, long docEnd);
};

}  // namespace vandrelle
