#include "Document/DcMetaDocManager.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "Document/DcChooser.h"
#include "Document/DcDocument.h"
#include "Document/DcDocumentUtil.h"
#include "Document/DcException.h"
#include "Document/DcFieldParser.h"
#include "Document/DcFieldsBinder.h"
#include "Document/DcFileListMgr.h"
#include "Document/DcMultiDocManager.h"
#include "Document/DcOneDocManager.h"
#include "Document/DcUserTypes.h"
#include "Document/SpecialWords.h"
#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Tool/HeapText.h"
#include "Tool/SysTools.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcMetaDocManager);

namespace {

// What stands between a file name and the number of a document.
constexpr char kPlaceSuffix[] = ":doc";
constexpr char kAbsoluteSuffix[] = ":abs";
constexpr std::size_t kSuffixLength = 4;
// A colon before this index belongs to the file name.
constexpr std::size_t kFirstSuffixIndex = 3;

char* concatenate(const char* text, const char* tail) { return copyText(std::string(text) + tail); }

long sizeOf(std::ifstream& stream) {
  stream.seekg(0, std::ios::end);
  const long size = stream.tellg();
  return size < 0 ? 0 : size;
}

}  // namespace

DcMetaDocManager::DcMetaDocManager(const char* root, TkStemmer* stemmer, DcFieldParser* fp,
                                   DcUserTypes* utypes)
    : userTypes_(utypes), stemmer_(stemmer), root_(root), fieldParser_(fp) {
  const std::string rows = root_ + ".idx";
  const std::string single = root_ + ".spc";
  if (SysTools::fileExists(rows.c_str())) {
    index_.reset(DcDocumentUtil::ReadFile(rows.c_str()));
    numDocuments_ = static_cast<int>(std::max(sizeOf(*index_) - DcTrailer::kBytes, 0L) / kRowSize);
  } else if (SysTools::fileExists(single.c_str())) {
    special_.reset(DcDocumentUtil::ReadFile(single.c_str()));
    datatype_ = DcDocumentUtil::ReadAtPos(special_.get(), 0);
    numDocuments_ = DcDocumentUtil::ReadAtPos(special_.get(), 4);
  } else {
    THROW(FileMgr, "There is no index to bind to");
  }
  if (fieldParser_ == nullptr) {
    newFP_ = std::make_unique<DcFieldParser>();
    fieldParser_ = newFP_.get();
  }
  chooser_ = std::make_unique<DcChooser>(root, userTypes_, nullptr, nullptr);
  fieldDB_ = std::make_unique<DcFieldsBinder>(root);
  flm_ = std::make_unique<DcFileListMgr>(root);
}

DcMetaDocManager::~DcMetaDocManager() = default;

DcDocument* DcMetaDocManager::documentNum(int document_num) {
  currentNum_ = document_num;
  const int realDocNum = document_num - firstNum_;
  if (numDocuments_ <= document_num || realDocNum < 0) return nullptr;

  int type = datatype_;
  int num = realDocNum;
  if (datatype_ < 0) {
    const long row = voffset_ + static_cast<long>(realDocNum) * kRowSize;
    type = DcDocumentUtil::ReadAtPos(index_.get(), row);
    num = DcDocumentUtil::ReadAtPos(index_.get(), row + 4);
  }
  currentType_ = type;
  DcDocument* document = dispatch(type, num);
  if (document != nullptr) attachConstraintWords(realDocNum, document);
  return document;
}

DcDocument* DcMetaDocManager::dispatch(int type, int num) {
  if (type >= DcDataType::kFirstUserForm) {
    const int slot = type - DcDataType::kFirstUserForm;
    if (slot >= kUserManagers) return nullptr;
    if (userManagers_[slot] == nullptr && userTypes_ != nullptr) {
      userManagers_[slot].reset(userTypes_->userManager(userRoot(type).c_str(), type, this));
    }
    return userManagers_[slot] == nullptr ? nullptr : userManagers_[slot]->documentNum(num);
  }
  if (chooser_->nonStdType(type)) {
    DcPartialDocumentManager* manager = chooser_->nonStdManager(type, this);
    return manager == nullptr ? nullptr : manager->documentNum(num);
  }
  if (chooser_->multiDocFiles(type) != 0) {
    if (multiMgr_ == nullptr) {
      multiMgr_ = std::make_unique<DcMultiDocManager>((root_ + "_mlt").c_str(), stemmer_, this,
                                                      chooser_.get());
    }
    return multiMgr_->documentNum(num);
  }
  if (oneMgr_ == nullptr) {
    oneMgr_ =
        std::make_unique<DcOneDocManager>((root_ + "_one").c_str(), stemmer_, this, chooser_.get());
  }
  return oneMgr_->documentNum(num);
}

void DcMetaDocManager::attachConstraintWords(int realDocNum, DcDocument* document) {
  if (!fieldParser_->hasConstraintFields() || !fieldDB_->gotoDoc(realDocNum)) return;
  DcFieldInfo field;
  while (fieldDB_->getField(field)) {
    if (!fieldParser_->ConstraintField(field.name.get())) continue;
    const std::unique_ptr<FdBag> values(
        fieldParser_->getFieldValues(field.name.get(), field.value.get()));
    const std::unique_ptr<FdStream> each(values->iterator());
    for (each->reset(); each->more(); each->next()) {
      const HeapAptr<char> word(
          SpecialWords::make(field.name.get(), static_cast<const char*>(each->key()), nullptr));
      document->addSpecialWord(word.get());
    }
  }
}

std::string DcMetaDocManager::userRoot(int type) const {
  char tail[16];
  std::snprintf(tail, sizeof tail, "_%02d", type - DcDataType::kFirstUserForm);
  return root_ + tail;
}

DcDocument* DcMetaDocManager::documentName(const char* name) {
  const int num = nameToNum(name);
  return num == -1 ? nullptr : documentNum(num);
}

int DcMetaDocManager::docNumToFileNum(long docNum) {
  if (docNum < firstNum_) return -1;
  return DcDocumentUtil::ReadAtPos(index_.get(), voffset_ + (docNum - firstNum_) * kRowSize + 8);
}

char* DcMetaDocManager::numToFileName(int docNum) {
  if (docNum >= numDocuments_) return nullptr;
  const int filenum = docNumToFileNum(docNum);
  if (filenum < 0 || !flm_->filesExist()) return nullptr;
  if (filenum != lastFileNum_) {
    lastFileName_.reset(flm_->numToName(filenum));
    lastFileNum_ = filenum;
  }
  return copyText(lastFileName_.get());
}

char* DcMetaDocManager::numToName(int docNum) {
  if (!flm_->filesExist()) return nullptr;
  const HeapAptr<char> fileName(numToFileName(docNum));
  if (fileName == nullptr) return nullptr;
  if (absname_ != 0) {
    return concatenate(fileName.get(), (kAbsoluteSuffix + std::to_string(docNum)).c_str());
  }
  const long filenum = docNumToFileNum(docNum);
  const long first = flm_->GetFirstDoc(filenum);
  long last = flm_->GetFirstDoc(filenum + 1) - 1;
  if (last < 0) last = numDocuments_ - 1;
  if (first == last) return copyText(fileName.get());
  return concatenate(fileName.get(),
                     (kPlaceSuffix + std::to_string(docNum - firstNum_ - first)).c_str());
}

int DcMetaDocManager::nameToNum(const char* name) {
  if (!flm_->filesExist()) return -1;
  const std::string whole(name);
  const std::size_t colon = whole.rfind(':');
  long low = -1;
  long high = -1;
  long date = 0;
  if (colon == std::string::npos || colon < kFirstSuffixIndex) {
    return flm_->nameInfo(name, &low, &high, &date) ? static_cast<int>(low) : -1;
  }
  const std::string suffix = whole.substr(colon);
  const int n = suffix.size() > kSuffixLength ? std::atoi(suffix.c_str() + kSuffixLength) : 0;
  if (suffix.compare(0, kSuffixLength, kAbsoluteSuffix) == 0) return n;
  if (!flm_->nameInfo(whole.substr(0, colon).c_str(), &low, &high, &date)) return -1;
  if (high < 0) high = numDocuments_;
  return n <= high - low ? static_cast<int>(low) + n : -1;
}

long DcMetaDocManager::corpusSize() { return flm_->filesExist() ? flm_->corpusSize() : 0; }

void DcMetaDocManager::setFirstDoc(long num) {
  firstNum_ = static_cast<int>(num);
  numDocuments_ += static_cast<int>(num);
}

char* DcMetaDocManager::getFieldsText(int docNum) {
  if (!fieldDB_->gotoDoc(docNum - firstNum_)) return nullptr;
  return fieldParser_->getFieldsText(fieldDB_.get());
}

}  // namespace vandrelle
