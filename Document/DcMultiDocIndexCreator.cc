#include "Document/DcMultiDocIndexCreator.h"

#include <limits>

#include "Document/DcChooser.h"
#include "Document/DcMetaIndexCreator.h"
#include "Document/DcMiniHeaderDocument.h"
#include "Document/DcMultiDocManager.h"
#include "DocumentImpl/DiFileHandler.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "DocumentImpl/DiSeparator.h"
#include "DocumentImpl/HelperStruct.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

// Forgets ends of file and failed reads, but not a broken stream.
void recover(std::ifstream* stream) { stream->clear(stream->rdstate() & std::ios::badbit); }

// Without a separator the rest of the file is one article.
long gotoNextArticle(DiSeparator* separator, std::ifstream* stream, long* docEnd) {
  if (separator != nullptr) return separator->gotoNextArticle(stream, docEnd);
  const auto start = stream->tellg();
  stream->seekg(0, std::ios::end);
  *docEnd = static_cast<long>(stream->tellg());
  stream->seekg(start);
  return *docEnd;
}

}  // namespace

DcMultiDocIndexCreator::DcMultiDocIndexCreator(const char* root, DcChooser* helpt,
                                               DcMetaIndexCreator* mcr, int info)
    : DcFileIndexCreator(root, helpt, mcr) {
  if (info == 2) bindIndex();
}

void DcMultiDocIndexCreator::setMembers() {
  index_->seekp(0, std::ios::end);
  const long size = static_cast<long>(index_->tellp());
  docNum_ = static_cast<int32_t>((size - 1) / DcMultiDocManager::kRecordSize);
}

int DcMultiDocIndexCreator::Add(const char* fileName) {
  helpers_ = helperTable_->helpers(-1);
  helpers_->handler->setMode(0);
  std::ifstream* stream = helpers_->handler->Open(fileName);
  if (stream == nullptr) {
    LOG(0, 1, fileName << " couldn't be opened.  Check existence and permissions");
    return 0;
  }
  const int count = EditIndex(fileName, stream);
  helpers_->handler->Close(stream);
  return count;
}

int DcMultiDocIndexCreator::EditIndex(const char* fileName, std::ifstream* thisFile) {
  const int32_t beginDocNum = docNum_;
  createIndex();
  while (thisFile->peek() != std::ifstream::traits_type::eof()) {
    const long filepos = static_cast<long>(thisFile->tellg());
    long docEnd = filepos;
    const long beginNext = gotoNextArticle(helpers_->separator, thisFile, &docEnd);
    recover(thisFile);
    if (beginNext == -1) {
      // A leading delimiter was consumed. Whoever consumed nothing never will.
      if (static_cast<long>(thisFile->tellg()) <= filepos) break;
      continue;
    }
    if (beginNext <= filepos) break;
    if (docEnd > std::numeric_limits<int32_t>::max()) {
      LOG(0, 1, fileName << " is larger than 2147483647 bytes - the rest of it is not added.");
      break;
    }
    if (docEnd >= filepos) addArticle(fileName, thisFile, filepos, docEnd);
    recover(thisFile);
    thisFile->seekg(beginNext);
  }
  return docNum_ - beginDocNum;
}

// Dropped when the header parser refuses it; it then leaves no gap.
void DcMultiDocIndexCreator::addArticle(const char* fileName, std::ifstream* thisFile, long filepos,
                                        long docEnd) {
  DiHeaderParser* parser = helpers_->headerParser;
  const int headSize = parser != nullptr ? parser->FindEndOfHeaders(thisFile, docEnd) : 0;
  if (headSize < 0) return;
  const int32_t start = static_cast<int32_t>(filepos);
  const int32_t size = static_cast<int32_t>(docEnd - filepos);
  ++docNum_;
  writeInt32(start);
  writeInt32(size);
  if (parser != nullptr) writeInt32(headSize);
  recover(thisFile);
  thisFile->seekg(filepos);
  DcMiniHeaderDocument document(parser, thisFile, start, size, headSize, 0, fileName);
  mcr_->storeFields(&document);
}

}  // namespace vandrelle
