#include "Document/DcMultiDocManager.h"

#include <algorithm>
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
#include "Tool/SysTools.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcMultiDocManager);

DcMultiDocManager::DcMultiDocManager(const char* root, TkStemmer* stemmer, DcMetaDocManager* mmgr,
                                     DcChooser* chooser)
    : DcFileDocManager(stemmer, mmgr, chooser, kRecordSize) {
  const std::string name = std::string(root) + ".idx";
  if (SysTools::fileExists(name.c_str())) index_ = DcDocumentUtil::ReadFile(name.c_str());
  numDocuments_ = numArticles();
}

int DcMultiDocManager::ArticleStart(int document_num) {
  return DcDocumentUtil::ReadAtPos(index_, static_cast<long>(document_num) * indexBlock_);
}

int DcMultiDocManager::numBytes(int document_num) {
  return DcDocumentUtil::ReadAtPos(index_, static_cast<long>(document_num) * indexBlock_ + 4);
}

int DcMultiDocManager::headSize(int document_num) {
  return DcDocumentUtil::ReadAtPos(index_, static_cast<long>(document_num) * indexBlock_ + 8);
}

DcDocument* DcMultiDocManager::documentNum(int document_num) {
  const int metaDocNum = mmgr_->currentNum();
  const int filenum = mmgr_->docNumToFileNum(metaDocNum);
  sameFile_ = filenum >= 0 && filenum == lastFileNum_;
  if (!sameFile_) lastFileNum_ = filenum;

  const HeapAptr<char> fileName(mmgr_->numToFileName(metaDocNum));
  HelperStruct* helpers = getCorrectHelpers();
  if (helpers == nullptr || helpers->lexer == nullptr) return nullptr;

  const int start = ArticleStart(document_num);
  const int docSize = numBytes(document_num);
  std::ifstream* stream = nullptr;
  if (fileName != nullptr && helpers->handler != nullptr) {
    stream = getCorrectStream(filenum, fileName.get(), helpers->handler);
    if (stream != nullptr) stream->seekg(start);
  }
  const int head = helpers->headerParser != nullptr ? headSize(document_num) : 0;
  return new DcFileHeaderDocument(stream, helpers->lexer, stemmer_, bufsize_, head,
                                  helpers->headerParser, start, docSize, metaDocNum, this, mmgr_);
}

HelperStruct* DcMultiDocManager::getCorrectHelpers() {
  if (sameFile_) return lastHelpers_;
  lastHelpers_ = chooser_->helpers(mmgr_->currentType());
  if (lastHelpers_ != nullptr && lastHelpers_->handler != nullptr) {
    lastHelpers_->handler->setMode(1);
  }
  return lastHelpers_;
}

std::ifstream* DcMultiDocManager::getCorrectStream(int filenum, const char* fileName,
                                                   DiFileHandler* handler) {
  if (last_ == nullptr) {
    last_ = &streamArr_[0];
    firstUnused_ = 1;
  } else if (last_->strm != nullptr) {
    if (last_->filenum == filenum) {
      ++last_->numDocs;
      return last_->strm;
    }
    if (last_->numDocs == 0) last_->zero();

    StreamRecord* free = nullptr;
    for (int i = 0; i < std::min(firstUnused_ + 1, kStreams); ++i) {
      StreamRecord& record = streamArr_[i];
      if (record.strm == nullptr) {
        if (free == nullptr) free = &record;
      } else if (record.filenum == filenum) {
        last_ = &record;
        ++record.numDocs;
        return record.strm;
      }
    }
    if (free == nullptr) THROW(FileMgr, "Too many streams open - delete your documents");
    last_ = free;
    if (free - streamArr_ == firstUnused_) ++firstUnused_;
  }

  std::ifstream* stream = handler->Open(fileName);
  if (stream == nullptr) {
    LOG(0, 1, fileName << " can no longer be opened: it counts as empty.");
    return nullptr;
  }
  *last_ = {stream, filenum, 1, handler};
  return stream;
}

void DcMultiDocManager::DoneWithDoc(int docNum) {
  if (last_ == nullptr) return;
  const int filenum = mmgr_->docNumToFileNum(docNum);
  if (last_->strm != nullptr && last_->filenum == filenum) {
    // Stays open at 0: the next article is likely to come from the same file.
    if (last_->numDocs > 0) --last_->numDocs;
    return;
  }
  for (int i = 0; i < firstUnused_; ++i) {
    StreamRecord& record = streamArr_[i];
    if (record.strm == nullptr || record.filenum != filenum) continue;
    if (--record.numDocs <= 0) record.zero();
    return;
  }
}

}  // namespace vandrelle
