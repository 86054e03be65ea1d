#include "Document/DcMetaIndexCreatorImpl.h"

#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

#include "Document/DcChooser.h"
#include "Document/DcException.h"
#include "Document/DcFieldBag.h"
#include "Document/DcFieldFinder.h"
#include "Document/DcFieldsCreator.h"
#include "Document/DcFileListCreator.h"
#include "Document/DcMetaDocManager.h"
#include "Document/DcTypeMap.h"
#include "Fun/FdStream.h"
#include "Token/CharacterClass.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"
#include "Tool/VandrelleLog.h"
#include "Tool/VersionControl.h"

namespace vandrelle {
namespace {

constexpr int kRowSize = DcMetaDocManager::kRowSize;
constexpr int kTrailerSize = DcTrailer::kBytes;

}  // namespace

DcMetaIndexCreatorImpl::DcMetaIndexCreatorImpl(const char* root, short info, DcUserTypes* usertypes)
    : info_(info),
      root_(root),
      usertypes_(usertypes),
      defaultFieldFinder_(std::make_unique<DcFieldFinder>()),
      fieldFinder_(defaultFieldFinder_.get()),
      defaultTypeMap_(std::make_unique<DcRegexpTypeMap>()),
      typeMap_(defaultTypeMap_.get()) {
  if (info_ == 2) bindIndex();
  chooser_ = std::make_unique<DcChooser>(root_.c_str(), usertypes_, index_.get(), this);
  fieldDB_ = std::make_unique<DcFieldsCreator>(root_.c_str(), 0);
  if (!fieldDB_->valid()) {
    LOG(0, 0, "The field files of " << root_ << " exist or cannot be made: no fields are stored.");
  }
  fieldsGood_ = fieldDB_->valid();
}

DcMetaIndexCreatorImpl::~DcMetaIndexCreatorImpl() {
  if (!Done_ && flc_ != nullptr) DoneAddingDocs();
}

// New rows follow the trailer of the earlier run, whose 72 bytes then read as
// six rows; readers of such an index count them.
void DcMetaIndexCreatorImpl::bindIndex() {
  const std::string name = root_ + ".idx";
  index_ = std::make_unique<std::fstream>(name, std::ios::in | std::ios::out | std::ios::binary);
  char filenum[4];
  index_->seekg(-(kTrailerSize + 4), std::ios::end);
  if (!index_->read(filenum, sizeof filenum)) {
    THROW(indexmgr, "The document list " << name << " cannot be bound to.");
  }
  filenum_ = loadS32(filenum);
  docNum_ = numDocuments();
}

void DcMetaIndexCreatorImpl::createIndex() {
  if (index_ != nullptr) return;
  index_ = std::make_unique<std::fstream>(root_ + ".idx",
                                          std::ios::out | std::ios::trunc | std::ios::binary);
}

int DcMetaIndexCreatorImpl::numDocuments() {
  if (index_ == nullptr) bindIndex();
  index_->seekp(0, std::ios::end);
  return static_cast<int>((static_cast<long>(index_->tellp()) - kTrailerSize) / kRowSize);
}

int DcMetaIndexCreatorImpl::Add(const char* fileName) {
  LOG(2, 1, "Indexing(Doc) " << fileName << "...");
  if (flc_ == nullptr) flc_ = std::make_unique<DcFileListCreator>(root_.c_str(), info_, this);
  std::string realName;
  long size = 0;
  const Kind kind = parseFileName(fileName, realName, size);
  if (kind == Kind::kNothing) return 0;
  if (kind == Kind::kDirectory) return flc_->AddDirectory(fileName, realName.c_str());

  long docNum = 0;
  const int numdocs = chooser_->Add(fileName, currentType_, &docNum);
  if (numdocs == 0) return 0;
  LOG(2, 1, "Indexed(Doc) " << fileName);
  if (std::any_of(fileName, fileName + std::strlen(fileName), character_class::isSpace)) {
    LOG(0, 1,
        "A name is read back up to its first white space, so these words will be missed; rename "
            << fileName);
  }
  flc_->AddFile(fileName, docNum_, realName.c_str(), size);
  docNum_ += numdocs;
  createIndex();
  if (!*index_) THROW(indexmgr, "couldn't create .idx file");
  ++filenum_;
  for (int i = 0; i < numdocs; ++i) {
    char row[kRowSize];
    storeS32(row, currentType_);
    storeS32(row + 4, static_cast<int32_t>(docNum++));
    storeS32(row + 8, filenum_);
    index_->write(row, sizeof row);
  }
  return numdocs;
}

// The same answer as realpath and stat of it, for less: the real path of a name
// that is no link is that of its directory and the name.
bool DcMetaIndexCreatorImpl::resolve(const char* fileName, std::string& realName,
                                     struct stat& status) {
  char buffer[PATH_MAX];
  const char* slash = std::strrchr(fileName, '/');
  const char* base = slash != nullptr ? slash + 1 : fileName;
  const std::string_view directory =
      slash != nullptr ? std::string_view(fileName, static_cast<std::size_t>(base - fileName))
                       : std::string_view("./");
  if (directory != lastDirectory_) {
    lastDirectory_ = directory;
    lastRealDirectory_ = realpath(lastDirectory_.c_str(), buffer) != nullptr ? buffer : "";
  }
  const bool plain = *base != '\0' && std::strcmp(base, ".") != 0 && std::strcmp(base, "..") != 0;
  if (plain && !lastRealDirectory_.empty() && lstat(fileName, &status) == 0 &&
      !S_ISLNK(status.st_mode)) {
    realName = lastRealDirectory_;
    if (realName.back() != '/') realName += '/';
    realName += base;
    if (realName.size() < PATH_MAX) return true;
  }
  realName = realpath(fileName, buffer) != nullptr ? buffer : fileName;
  return stat(realName.c_str(), &status) == 0;
}

DcMetaIndexCreatorImpl::Kind DcMetaIndexCreatorImpl::parseFileName(const char* fileName,
                                                                   std::string& realName,
                                                                   long& size) {
  struct stat status;
  if (!resolve(fileName, realName, status)) {
    LOG(0, 1, fileName << " doesn't exist.");
    return Kind::kNothing;
  }
  if (S_ISDIR(status.st_mode)) return checkDirectory(fileName, realName);
  return checkFile(fileName, realName, status, size);
}

DcMetaIndexCreatorImpl::Kind DcMetaIndexCreatorImpl::checkDirectory(const char* fileName,
                                                                    const std::string& truepath) {
  if (typeMap_->excludeDir(truepath.c_str())) return Kind::kNothing;
  if (flc_->NewDirectory(truepath.c_str())) {
    // Its entries come next.
    lastDirectory_ = fileName;
    if (lastDirectory_.back() != '/') lastDirectory_ += '/';
    lastRealDirectory_ = truepath;
    return Kind::kDirectory;
  }
  LOG(0, 1, fileName << " is a directory that has already been added - not added again");
  return Kind::kNothing;
}

DcMetaIndexCreatorImpl::Kind DcMetaIndexCreatorImpl::checkFile(const char* fileName,
                                                               const std::string& truepath,
                                                               const struct stat& status,
                                                               long& size) {
  currentType_ = typeMap_->fileToType(truepath.c_str());
  if (currentType_ == 0) return Kind::kNothing;
  if (status.st_size == 0) {
    LOG(0, 1, fileName << " is an empty file - not added.");
    return Kind::kNothing;
  }
  // Offsets and sizes in the lists have 31 bits.
  if (status.st_size > std::numeric_limits<int32_t>::max()) {
    LOG(0, 1, fileName << " is larger than 2147483647 bytes - not added.");
    return Kind::kNothing;
  }
  if (!flc_->NewFile(truepath.c_str())) {
    LOG(2, 1, truepath << " already in index - not added again");
    return Kind::kNothing;
  }
  size = static_cast<long>(status.st_size);
  return Kind::kFile;
}

void DcMetaIndexCreatorImpl::storeFields(DcDocument* doc) {
  if (fieldStream_ == nullptr) return;
  for (fieldStream_->reset(); fieldStream_->more(); fieldStream_->next()) {
    const char* name = static_cast<const char*>(fieldStream_->key());
    DcFieldCheck check = {0};
    int size = sizeof check;
    fieldStream_->data(&check, &size);
    const HeapAptr<char> value(fieldFinder_->getField(doc, root_.c_str(), name));
    if (value.get() != nullptr) {
      fieldDB_->add(name, value.get());
    } else if (check.required != 0) {
      LOG(0, 0, "there is no value for the required field " << name);
    }
  }
  fieldDB_->endDoc();
}

DocPair DcMetaIndexCreatorImpl::Remove(const char* fileName) {
  DocPair documents;
  if (info_ != 2) return documents;
  if (flc_ == nullptr) flc_ = std::make_unique<DcFileListCreator>(root_.c_str(), info_, this);
  long low = -1;
  long high = -1;
  flc_->Remove(fileName, &low, &high);
  documents.low = static_cast<int32_t>(low);
  documents.high = static_cast<int32_t>(high < 0 ? numDocuments() - 1 : high);
  return documents;
}

void DcMetaIndexCreatorImpl::DoneAddingDocs() {
  Done_ = true;
  if (index_ != nullptr) {
    chooser_->writeNumsToDisk(index_.get());
    chooser_->Done();
  }
  VersionControl::setVersion(root_.c_str(), 0, 1);
  // An empty list of names must not pass for success: an index of an earlier run
  // may lie there.
  if (flc_ == nullptr && info_ != 2) {
    flc_ = std::make_unique<DcFileListCreator>(root_.c_str(), info_, this);
  }
  if (flc_ != nullptr) flc_->Done();
  flc_.reset();
  if (index_ != nullptr && !index_->flush()) {
    THROW(indexmgr, "The document list could not be written to "
                        << root_ << ".idx; check the free space and the rights of its folder.");
  }
  fieldDB_->flush();
  if (fieldsGood_ && !fieldDB_->valid()) {
    THROW(indexmgr, "The fields could not be written to the files "
                        << root_ << ".fld.*; check the free space and the rights of their folder.");
  }
}

DcDocumentManager* DcMetaIndexCreatorImpl::getDocManager(TkStemmer* stemmer,
                                                         DcFieldParser* fieldParser) {
  return new DcMetaDocManager(root_.c_str(), stemmer, fieldParser, usertypes_);
}

DcRegexpTypeMap* DcMetaIndexCreatorImpl::builtInMap() const {
  return typeMap_ == defaultTypeMap_.get() ? defaultTypeMap_.get() : nullptr;
}

void DcMetaIndexCreatorImpl::addDataType(const char* regexp, int type, char binFlag) {
  if (builtInMap() != nullptr) builtInMap()->addDataType(regexp, type, binFlag);
}

void DcMetaIndexCreatorImpl::excludeBadEndings() {
  if (builtInMap() != nullptr) builtInMap()->excludeBadEndings();
}

void DcMetaIndexCreatorImpl::excludeRegExp(const char* regexp) {
  addDataType(regexp, DcDataType::kExcluded, 0);
}

void DcMetaIndexCreatorImpl::DoneWithDataTypes() {
  if (builtInMap() != nullptr) builtInMap()->DoneWithDataTypes();
}

void DcMetaIndexCreatorImpl::setTypeMap(DcTypeMap* typeMap) {
  typeMap_ = typeMap != nullptr ? typeMap : defaultTypeMap_.get();
}

void DcMetaIndexCreatorImpl::specifyFields(DcFieldBag* fieldBag) {
  fieldStream_.reset(fieldBag != nullptr ? fieldBag->iterator() : nullptr);
}

void DcMetaIndexCreatorImpl::setFieldFinder(DcFieldFinder* fieldFinder) {
  fieldFinder_ = fieldFinder != nullptr ? fieldFinder : defaultFieldFinder_.get();
}

}  // namespace vandrelle
