#include "Document/DcFieldsBinder.h"

#include <algorithm>
#include <cstring>

#include "Document/DcFieldFilter.h"
#include "Document/DcFieldNames.h"
#include "Document/DcFieldsCreator.h"
#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Tool/HeapText.h"
#include "Tool/NameManager.h"

namespace vandrelle {

namespace {

constexpr std::size_t kNameBytes = 256;
constexpr int kPieceBytes = 64;
static_assert(DcFieldsBinder::kValueBytes % kPieceBytes == 0);

// A name in a new array of kNameBytes, cut if it is longer.
std::unique_ptr<char[]> nameBuffer(const std::string& name) {
  std::unique_ptr<char[]> buffer(new char[kNameBytes]());
  std::memcpy(buffer.get(), name.data(), std::min(name.size(), kNameBytes - 1));
  return buffer;
}

// A run that is cut short while it removes the slow form leaves a part of it, which
// must not hide the fast one.
bool hasSlowForm(const NameManager& name) {
  for (const char* suffix : {".fld.ptr", ".fld.lst", ".fld.val", ".fld.nam"}) {
    if (!SysTools::fileExists(name.suffix(suffix))) return false;
  }
  return true;
}

}  // namespace

DcFieldsBinder::DcFieldsBinder(const char* root) {
  const NameManager name(root, 20);
  if (hasSlowForm(name) && ismain_.open(name.suffix(".fld.ptr"))) {
    valid_ = openSlow(root);
  } else {
    valid_ = fastFilesOn(root);
  }
}

DcFieldsBinder::~DcFieldsBinder() = default;

bool DcFieldsBinder::openSlow(const char* root) {
  const NameManager name(root, 20);
  if (!islist_.open(name.suffix(".fld.lst"))) return false;
  isval_.open(name.suffix(".fld.val"), StStorageStream::kRead | StStorageStream::kExisting);
  DcSourceStream isnam;
  if (!isval_.isOpen() || !isnam.open(name.suffix(".fld.nam"))) return false;

  ismain_.seekg(0, std::ios::end);
  const std::streamoff size = ismain_.tellg();
  ismain_.seekg(0);
  if (size < 0 || size % DcFieldsCreator::kPtrBytes != 0) return false;
  numDocuments_ = static_cast<int>(size / DcFieldsCreator::kPtrBytes);

  std::vector<DcFieldName> names;
  if (!getNames(isnam, &names)) return false;
  for (const DcFieldName& field : names) {
    ptr2nam_[field.position] = field.name;
    nam2ptr_.emplace(field.name, field.position);
  }
  slowOpen_ = true;
  return true;
}

void DcFieldsBinder::refreshValid() { valid_ = valid_ && isval_.isOpen(); }

bool DcFieldsBinder::gotoDoc(int num) {
  if (!valid_ || num < 0 || num >= numDocuments_) return false;
  if (!fastFileRoot_.empty()) {
    gonum_ = num;
    internalNum_ = 0;
    return true;
  }
  if (num != docnum_) {
    ismain_.clear();
    ismain_.seekg(std::streamoff{num} * DcFieldsCreator::kPtrBytes);
    char entry[DcFieldsCreator::kPtrBytes];
    if (!ismain_.read(entry, sizeof entry)) valid_ = false;
    listpos_ = valid_ ? loadU32(entry) : DcFieldsCreator::kNoFields;
  }
  docnum_ = num;
  endfields_ = listpos_ == DcFieldsCreator::kNoFields;
  if (!endfields_) {
    islist_.clear();
    islist_.seekg(listpos_);
  }
  refreshValid();
  return valid_;
}

bool DcFieldsBinder::getFieldPos(std::uint16_t* nampos, StStoragePos* valpos) {
  if (!valid_ || endfields_) return false;
  const bool first = islist_.tellg() == std::streampos(listpos_);
  char record[DcFieldsCreator::kRecordBytes];
  if (!islist_.read(record, 2)) {
    valid_ = false;
    return false;
  }
  *nampos = loadU16(record);
  if ((*nampos & DcFieldsCreator::kFirstRecord) != 0) {
    *nampos = static_cast<std::uint16_t>(*nampos & ~DcFieldsCreator::kFirstRecord);
    if (!first) {  // the next document's
      endfields_ = true;
      return false;
    }
  }
  if (!islist_.read(record + 2, DcFieldsCreator::kRecordBytes - 2)) {
    valid_ = false;
    return false;
  }
  *valpos = StStoragePos(loadU32(record + 2), loadU32(record + 6));
  if (islist_.peek() == std::istream::traits_type::eof()) {
    endfields_ = true;
    islist_.clear();
  }
  refreshValid();
  return valid_;
}

std::unique_ptr<char[]> DcFieldsBinder::readValue(const StStoragePos& valpos,
                                                  const std::string& name) {
  char buffer[kValueBytes];
  if (!isval_.seek(valpos, StStorageStream::kAbsolute)) {
    valid_ = false;
    return nullptr;
  }
  // No further than to the value's end: reading ahead would move the stream's
  // window on, and the next value lies behind this one.
  int size = 0;
  bool ended = false;
  while (!ended && size < kValueBytes) {
    const int got = static_cast<int>(isval_.read(buffer + size, kPieceBytes));
    ended = got < kPieceBytes ||
            std::memchr(buffer + size, '\0', static_cast<std::size_t>(got)) != nullptr;
    size += std::max(got, 0);
  }
  buffer[std::min(size, kValueBytes - 1)] = '\0';
  if (filter_in_use_ && filter_ != nullptr) {
    return std::unique_ptr<char[]>(filter_->filterText(buffer, name.c_str()));
  }
  return std::unique_ptr<char[]>(copyText(buffer));
}

bool DcFieldsBinder::getField(DcFieldInfo& field) {
  if (!valid_) return false;
  if (!fastFileRoot_.empty()) return getFastField(field);
  std::uint16_t nampos;
  StStoragePos valpos;
  if (docnum_ < 0 || !getFieldPos(&nampos, &valpos)) return false;
  const auto name = ptr2nam_.find(nampos);
  if (name == ptr2nam_.end()) {
    valid_ = false;
    return false;
  }
  field.value = readValue(valpos, name->second);
  field.name = nameBuffer(convertName(name->second));
  return valid_;
}

char* DcFieldsBinder::retrieve(int num, const char* fieldName) {
  if (!valid_ || !gotoDoc(num)) return nullptr;
  const std::string name = convertName(fieldName);
  if (!fastFileRoot_.empty()) {
    const int number = fieldNum(name);
    if (number < 0 || !loadFast(num)) return nullptr;
    return fastValue(cachedFieldBuf_.data(), cachedBytes_, number);
  }
  const auto wanted = nam2ptr_.find(name);
  if (wanted == nam2ptr_.end()) return nullptr;
  std::uint16_t nampos;
  StStoragePos valpos;
  while (getFieldPos(&nampos, &valpos)) {
    if (nampos == wanted->second) return readValue(valpos, name).release();
  }
  return nullptr;
}

void DcFieldsBinder::setFilter(DcFieldFilter* filter) {
  filter_ = filter;
  filter_in_use_ = filter != nullptr;
}

void DcFieldsBinder::equate(const char* srcName, const char* destName) {
  namePairTable_[srcName] = destName;
}

void DcFieldsBinder::equate(FdBag* conversions) {
  std::unique_ptr<FdStream> pairs(conversions->iterator());
  for (pairs->reset(); pairs->more(); pairs->next()) {
    equate(static_cast<const char*>(pairs->key()), static_cast<const char*>(pairs->data()));
  }
}

std::string DcFieldsBinder::convertName(const std::string& name) const {
  const auto found = namePairTable_.find(name);
  return found == namePairTable_.end() ? name : found->second;
}

}  // namespace vandrelle
