#include "Document/DcFieldsCreator.h"

#include <cstring>
#include <string>

#include "Document/DcFieldNames.h"
#include "Fun/Fd.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr int kNamesHint = 64;
constexpr int kReadWriteAtEnd = 11;

// Opens a file for reading and writing at its end, made if it isn't there.
// Answers its size through `size`.
bool openAtEnd(std::fstream& file, const char* path, int okexist, uint32* size) {
  const bool exists = SysTools::fileExists(path);
  if (exists && !okexist) return false;
  std::ios_base::openmode mode = std::ios::in | std::ios::out | std::ios::binary;
  if (!exists) mode |= std::ios::trunc;
  file.open(path, mode);
  if (!file) return false;
  file.seekp(0, std::ios::end);
  *size = static_cast<uint32>(file.tellp());
  return file.good();
}

}  // namespace

DcFieldsCreator::DcFieldsCreator(const char* root, int okexist) : names_(Fd::Table(kNamesHint)) {
  valid_ = open(root, okexist);
}

bool DcFieldsCreator::open(const char* root, int okexist) {
  const NameManager name(root, 20);
  if (!openAtEnd(osmain_, name.suffix(".fld.ptr"), okexist, &mainEnd_)) return false;
  if (!openAtEnd(oslist_, name.suffix(".fld.lst"), okexist, &listEnd_)) return false;
  osval_.open(name.suffix(".fld.val"), kReadWriteAtEnd);
  if (!osval_.isOpen()) return false;
  if (!openAtEnd(osnam_, name.suffix(".fld.nam"), okexist, &nameEnd_)) return false;
  if (nameEnd_ > 0) {
    std::vector<DcFieldName> known;
    osnam_.seekg(0);
    if (!readFieldNames(osnam_, &known)) return false;
    for (const DcFieldName& field : known) names_.insert(field.name.c_str(), field.position);
    osnam_.clear();
    osnam_.seekp(0, std::ios::end);
  }
  if (mainEnd_ % kPtrBytes != 0) return false;
  numDocuments_ = static_cast<int>(mainEnd_ / kPtrBytes);
  listptr_ = listEnd_;
  return true;
}

DcFieldsCreator::~DcFieldsCreator() {
  restoreTail();
  if (osval_.isOpen()) osval_.close();
}

void DcFieldsCreator::refreshValid() {
  valid_ = valid_ && osmain_.good() && oslist_.good() && osnam_.good() && osval_.isOpen();
}

bool DcFieldsCreator::namePosition(const char* fieldName, uint32* nampos) {
  if (names_.find(fieldName, *nampos)) return true;
  if (nameEnd_ >= kNameLimit) return false;
  *nampos = nameEnd_;
  const std::size_t bytes = std::strlen(fieldName) + 1;
  osnam_.write(fieldName, static_cast<std::streamsize>(bytes));
  nameEnd_ += static_cast<uint32>(bytes);
  names_.insert(fieldName, *nampos);
  return true;
}

void DcFieldsCreator::add(const char* fieldName, const char* fieldValue) {
  if (!valid_) return;
  uint32 nampos;
  // Offsets into .fld.lst have 32 bits, and the highest means "no fields".
  if (listEnd_ > kNoFields - kRecordBytes || !namePosition(fieldName, &nampos)) {
    valid_ = false;
    return;
  }
  if (listEnd_ == listptr_) nampos |= kFirstRecord;
  const StStoragePos valpos = osval_.tell();
  osval_.write(fieldValue, static_cast<unsigned>(std::strlen(fieldValue) + 1));
  char record[kRecordBytes];
  storeU16(record, static_cast<std::uint16_t>(nampos));
  storeU32(record + 2, valpos.Hi());
  storeU32(record + 6, valpos.Lo());
  oslist_.write(record, kRecordBytes);
  listEnd_ += kRecordBytes;
  refreshValid();
}

void DcFieldsCreator::endDoc() {
  if (!valid_) return;
  ++numDocuments_;
  char entry[kPtrBytes];
  storeU32(entry, listEnd_ != listptr_ ? listptr_ : kNoFields);
  osmain_.write(entry, kPtrBytes);
  mainEnd_ += kPtrBytes;
  listptr_ = listEnd_;
  refreshValid();
}

void DcFieldsCreator::flush() {
  if (!valid_) return;
  osmain_.flush();
  oslist_.flush();
  osnam_.flush();
  osval_.flush();
  refreshValid();
}

void DcFieldsCreator::restoreTail() {
  if (mainbuf_.empty()) return;
  osmain_.write(mainbuf_.data(), static_cast<std::streamsize>(mainbuf_.size()));
  mainEnd_ += static_cast<uint32>(mainbuf_.size());
  mainbuf_.clear();
}

bool DcFieldsCreator::gotoDoc(int docnum) {
  restoreTail();
  flush();
  const int documents = static_cast<int>(mainEnd_ / kPtrBytes);
  if (docnum < 0 || documents <= 0 || documents < docnum) return false;
  if (documents == docnum) return true;
  const uint32 place = static_cast<uint32>(docnum) * kPtrBytes;
  mainbuf_.resize(mainEnd_ - place);
  osmain_.seekg(place);
  osmain_.read(mainbuf_.data(), static_cast<std::streamsize>(mainbuf_.size()));
  osmain_.seekp(place);
  mainEnd_ = place;
  refreshValid();
  return valid_;
}

}  // namespace vandrelle
