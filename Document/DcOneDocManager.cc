#include "Document/DcOneDocManager.h"

#include <fstream>
#include <memory>
#include <string>

#include "Document/DcChooser.h"
#include "Document/DcDocumentUtil.h"
#include "Document/DcException.h"
#include "Document/DcFileHeaderDocument.h"
#include "Document/DcMetaDocManager.h"
#include "DocumentImpl/DiFileHandler.h"
#include "DocumentImpl/HelperStruct.h"
#include "Tool/HeapText.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcOneDocManager);

DcOneDocManager::DcOneDocManager(const char* root, TkStemmer* stemmer, DcMetaDocManager* mmgr,
                                 DcChooser* chooser)
    : DcFileDocManager(stemmer, mmgr, chooser, kRecordSize) {
  index_ = DcDocumentUtil::ReadFile((std::string(root) + ".idx").c_str());
  numDocuments_ = numArticles();
}

DcDocument* DcOneDocManager::documentNum(int document_num) {
  const int metaDocNum = mmgr_->currentNum();
  const HeapAptr<char> fileName(mmgr_->numToFileName(metaDocNum));
  HelperStruct* helpers = chooser_->helpers(mmgr_->currentType());
  if (helpers == nullptr || helpers->lexer == nullptr) return nullptr;

  const long row = static_cast<long>(document_num) * indexBlock_;
  const int docSize = DcDocumentUtil::ReadAtPos(index_, row);
  std::ifstream* stream = nullptr;
  if (helpers->handler != nullptr) helpers->handler->setMode(1);
  if (fileName != nullptr && helpers->handler != nullptr) {
    const int filenum = mmgr_->docNumToFileNum(metaDocNum);
    stream = GetCorrectStream(filenum, fileName.get(), helpers->handler);
    if (stream != nullptr) stream->seekg(0);
  }
  const int headSize =
      helpers->headerParser != nullptr ? DcDocumentUtil::ReadAtPos(index_, row + 4) : 0;
  return new DcFileHeaderDocument(stream, helpers->lexer, stemmer_, bufsize_, headSize,
                                  helpers->headerParser, 0, docSize, metaDocNum, this, mmgr_);
}

std::ifstream* DcOneDocManager::GetCorrectStream(int filenum, const char* fileName,
                                                 DiFileHandler* handler) {
  StreamRecord* record = nullptr;
  for (StreamRecord& candidate : streamArr_) {
    if (candidate.strm == nullptr) {
      record = &candidate;
      break;
    }
  }
  if (record == nullptr) THROW(FileMgr, "Too many streams open - delete your documents");
  std::ifstream* stream = handler->Open(fileName);
  if (stream == nullptr) {
    LOG(0, 1, fileName << " can no longer be opened: it counts as empty.");
    return nullptr;
  }
  record->strm = stream;
  record->filenum = filenum;
  record->handler = handler;
  return stream;
}

void DcOneDocManager::DoneWithDoc(int docNum) {
  const int filenum = mmgr_->docNumToFileNum(docNum);
  for (StreamRecord& record : streamArr_) {
    if (record.strm != nullptr && record.filenum == filenum) {
      record.zero();
      return;
    }
  }
}

}  // namespace vandrelle
