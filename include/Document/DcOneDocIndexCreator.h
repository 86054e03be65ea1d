// Adds files that are one document each. The index is drawn in DcOneDocManager.h.
#pragma once

#include "Document/DcFileIndexCreator.h"

namespace vandrelle {

class DcOneDocIndexCreator : public DcFileIndexCreator {
 public:
  // `info` 2 binds to the existing index. Throws _Exception_FileInd.
  DcOneDocIndexCreator(const char* root, DcChooser* helpt, DcMetaIndexCreator* mcr, int info);

  int Add(const char* fileName) override;

 protected:
  void setMembers() override;

 private:
  int EditIndex(const char* fileName, std::ifstream* thisFile, int32_t size);
};

}  // namespace vandrelle
