#include "Document/DcOneDocIndexCreator.h"

#include <sys/stat.h>

#include <algorithm>
#include <limits>

#include "Document/DcChooser.h"
#include "Document/DcMetaIndexCreator.h"
#include "Document/DcMiniHeaderDocument.h"
#include "Document/DcOneDocManager.h"
#include "DocumentImpl/DiFileHandler.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "DocumentImpl/HelperStruct.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

DcOneDocIndexCreator::DcOneDocIndexCreator(const char* root, DcChooser* helpt,
                                           DcMetaIndexCreator* mcr, int info)
    : DcFileIndexCreator(root, helpt, mcr) {
  if (info == 2) bindIndex();
}

void DcOneDocIndexCreator::setMembers() {
  index_->seekp(0, std::ios::end);
  docNum_ = static_cast<int32_t>(index_->tellp() / DcOneDocManager::kRecordSize);
}

int DcOneDocIndexCreator::Add(const char* fileName) {
  helpers_ = helperTable_->helpers(-1);
  helpers_->handler->setMode(0);
  std::ifstream* stream = helpers_->handler->Open(fileName);
  struct stat status;
  if (stream == nullptr || stat(fileName, &status) != 0) {
    LOG(0, 1, fileName << " is not readable by all.  Check your permissions.");
    if (stream != nullptr) helpers_->handler->Close(stream);
    return 0;
  }
  // The size on disk, not of what the handler delivers.
  const long size = std::min<long>(status.st_size, std::numeric_limits<int32_t>::max());
  const int count = EditIndex(fileName, stream, static_cast<int32_t>(size));
  helpers_->handler->Close(stream);
  ++docNum_;
  return count;
}

int DcOneDocIndexCreator::EditIndex(const char* fileName, std::ifstream* thisFile, int32_t size) {
  createIndex();
  writeInt32(size);
  DiHeaderParser* parser = helpers_->headerParser;
  int filepos = 0;
  if (parser != nullptr) {
    filepos = parser->FindEndOfHeaders(thisFile, 0);
    thisFile->clear(thisFile->rdstate() & std::ios::badbit);
    if (filepos == -1) filepos = size;
    writeInt32(filepos);
  } else {
    writeInt32(-1);
  }
  thisFile->seekg(0);
  DcMiniHeaderDocument document(parser, thisFile, 0, size, filepos, 0, fileName);
  mcr_->storeFields(&document);
  return 1;
}

}  // namespace vandrelle
