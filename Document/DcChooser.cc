#include "Document/DcChooser.h"

#include <fstream>

#include "Document/DcDocumentManager.h"
#include "Document/DcMetaIndexCreator.h"
#include "Document/DcMultiDocIndexCreator.h"
#include "Document/DcOneDocIndexCreator.h"
#include "Document/DcUserTypes.h"
#include "DocumentImpl/DiHelperDistributor.h"
#include "DocumentImpl/PDFDocument.h"
#include "DocumentImpl/PDFManager.h"
#include "Tool/ByteOrder.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

void DcTrailer::load(const char* from) {
  oneDocNum_ = loadS32(from);
  multiDocNum_ = loadS32(from + 4);
  for (int slot = 0; slot < kUserSlots; ++slot) {
    userCreatorNums_[slot] = loadS32(from + 8 + 4 * slot);
  }
}

void DcTrailer::store(char* to) const {
  storeS32(to, oneDocNum_);
  storeS32(to + 4, multiDocNum_);
  for (int slot = 0; slot < kUserSlots; ++slot) {
    storeS32(to + 8 + 4 * slot, userCreatorNums_[slot]);
  }
}

DcChooser::DcChooser(const char* root, DcUserTypes* usertypes, std::fstream* index,
                     DcMetaIndexCreator* mcr)
    : userTypes_(usertypes),
      oneRoot_(std::string(root) + "_one"),
      multiRoot_(std::string(root) + "_mlt"),
      root_(root),
      helperDist_(std::make_unique<DiHelperDistributor>(root_.c_str())),
      mcr_(mcr) {
  if (index == nullptr) return;
  info_ = 2;
  char trailer[DcTrailer::kBytes] = {};
  index->clear();
  index->seekg(-DcTrailer::kBytes, std::ios::end);
  index->read(trailer, sizeof trailer);
  index->clear();
  next_.load(trailer);
  index->seekp(0, std::ios::end);
}

DcChooser::~DcChooser() = default;

int DcChooser::Add(const char* fileName, int type, long* docNum) {
  currentType_ = type;
  if (type >= DcDataType::kFirstUserForm) return userAdd(fileName, type, docNum);
  if (nonStdType(type)) return nonStdAdd(fileName, type);
  if (multiDocFiles(type)) {
    if (multiDocCreator_ == nullptr) {
      multiDocCreator_ =
          std::make_unique<DcMultiDocIndexCreator>(multiRoot_.c_str(), this, mcr_, info_);
    }
    const int count = multiDocCreator_->Add(fileName);
    *docNum = next_.multiDocNum_;
    next_.multiDocNum_ += count;
    return count;
  }
  if (oneDocCreator_ == nullptr) {
    oneDocCreator_ = std::make_unique<DcOneDocIndexCreator>(oneRoot_.c_str(), this, mcr_, info_);
  }
  const int count = oneDocCreator_->Add(fileName);
  *docNum = next_.oneDocNum_;
  next_.oneDocNum_ += count;
  return count;
}

int DcChooser::userAdd(const char* fileName, int type, long* docNum) {
  const int slot = type - DcDataType::kFirstUserForm;
  if (slot >= kUserSlots) {
    LOG(0, 1, fileName << " has the data type " << type << ", above the last that can be served.");
    return 0;
  }
  if (userCreators_[slot] == nullptr && userTypes_ != nullptr) {
    userCreators_[slot].reset(userTypes_->userCreator(root_.c_str(), type));
  }
  // A type without a creator still makes one document of each file.
  const int count = userCreators_[slot] != nullptr ? userCreators_[slot]->Add(fileName) : 1;
  *docNum = next_.userCreatorNums_[slot];
  next_.userCreatorNums_[slot] += count;
  return count;
}

int DcChooser::nonStdAdd(const char* fileName, int /*type*/) {
  PDFDocument document(fileName, nullptr, 0);
  mcr_->storeFields(&document);
  return 1;
}

DcPartialDocumentManager* DcChooser::nonStdManager(int type, DcMetaDocManager* mmgr) {
  if (!nonStdType(type)) return nullptr;
  if (PDFManager_ == nullptr) PDFManager_ = std::make_unique<PDFManager>(mmgr);
  return PDFManager_.get();
}

HelperStruct* DcChooser::helpers(int type) {
  if (type == -1) type = currentType_;
  if (type < DcDataType::kFirstUser) return helperDist_->helpers(type);
  const int slot = type - DcDataType::kFirstUser;
  HelperStruct* found = slot < kUserSlots ? userHelpers_[slot] : nullptr;
  if (found == nullptr && userTypes_ != nullptr) found = userTypes_->userHelpers(type);
  if (found == nullptr) found = helperDist_->helpers(DcDataType::kText);
  if (slot < kUserSlots) userHelpers_[slot] = found;
  return found;
}

int DcChooser::multiDocFiles(int type) {
  if (type < DcDataType::kFirstUser) return helperDist_->multiDocFiles(type);
  return userTypes_ != nullptr ? userTypes_->multiDocFiles(type) : 0;
}

void DcChooser::writeNumsToDisk(std::fstream* index) {
  char trailer[DcTrailer::kBytes];
  next_.store(trailer);
  index->seekp(0, std::ios::end);
  index->write(trailer, sizeof trailer);
}

void DcChooser::Done() {
  for (auto& creator : userCreators_) {
    if (creator != nullptr) creator->DoneAddingDocs();
  }
  if (oneDocCreator_ != nullptr) oneDocCreator_->DoneAddingDocs();
  if (multiDocCreator_ != nullptr) multiDocCreator_->DoneAddingDocs();
  oneDocCreator_.reset();
  multiDocCreator_.reset();
}

}  // namespace vandrelle
