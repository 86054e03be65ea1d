#include "Document/DcFileListMgr.h"

#include <string>

#include "Document/DcDocumentUtil.h"
#include "Document/DcException.h"
#include "Document/DcFileListCreator.h"
#include "Document/DcFileListReader.h"
#include "Document/DcFileStream.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

// Null when the file cannot be opened.
std::unique_ptr<std::fstream> openList(const std::string& name) {
  auto list = std::make_unique<DcListStream>(name.c_str(), DcListStream::kRecordWindow);
  if (!list->good()) return nullptr;
  return list;
}

}  // namespace

DcFileListMgr::DcFileListMgr(const char* root) {
  const std::string base(root);
  const std::string listName = base + ".lst";
  const std::string ptrName = base + ".lpt";
  const std::string dirName = base + ".dir";
  filesExist_ = SysTools::fileExists(listName.c_str()) && SysTools::fileExists(ptrName.c_str());
  if (!filesExist_) return;

  fileList_ = openList(listName);
  if (fileList_ == nullptr) THROW(ListMgr, "can't open file list file");
  ptrList_ = openList(ptrName);
  if (ptrList_ == nullptr) THROW(ListMgr, "can't open ptr list file");
  if (SysTools::fileExists(dirName.c_str())) {
    dirList_ = openList(dirName);
    if (dirList_ == nullptr) THROW(ListMgr, "Can't open dir file");
  }
  reader_ =
      std::make_unique<DcFileListReader>(root, ptrList_.get(), fileList_.get(), dirList_.get());
}

DcFileListMgr::~DcFileListMgr() = default;

long DcFileListMgr::numFiles() { return filesExist_ ? reader_->numFiles() : 0; }

char* DcFileListMgr::numToName(int filenum) {
  if (!filesExist_ || filenum < 0) return nullptr;
  ptrList_->clear();
  ptrList_->seekg(long{filenum} * DcFileListCreator::kPointerSize);
  return reader_->readName();
}

long DcFileListMgr::corpusSize() {
  if (!filesExist_) return 0;
  fileList_->clear();
  fileList_->seekg(-4, std::ios::end);
  if (!*fileList_) {
    fileList_->clear();
    return 0;
  }
  return static_cast<uint32>(DcDocumentUtil::read_int32(*fileList_));
}

bool DcFileListMgr::nameInfo(const char* name, long* low, long* high, long* date) {
  return filesExist_ && reader_->nameInfo(name, low, high, date) >= 0;
}

long DcFileListMgr::GetFirstDoc(long filenum) {
  return filesExist_ ? reader_->GetFirstDoc(filenum) : -1;
}

}  // namespace vandrelle
