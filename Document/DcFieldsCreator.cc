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

DcFieldsCreator::DcFieldsCreator(const char* root, int okexist) : names(Fd::Table(kNamesHint)) {
  valid_ = open(root, okexist);
}

bool DcFieldsCreator::open(const char* root, int okexist) {
  const NameManager name(root, 20);
  if (!openAtEnd(osmain, name.suffix(".fld.ptr"), okexist, &mainEnd_)) return false;
  if (!openAtEnd(oslist, name.suffix(".fld.lst"), okexist, &listEnd_)) return false;
  osval.open(name.suffix(".fld.val"),
             StStorageStream::kRead | StStorageStream::kWrite | StStorageStream::kAtEnd);
  if (!osval.isOpen()) return false;
  if (!openAtEnd(osnam, name.suffix(".fld.nam"), okexist, &nameEnd_)) return false;
  if (nameEnd_ > 0) {
    std::vector<DcFieldName> known;
    osnam.seekg(0);
    if (!getNames(osnam, &known)) return false;
    for (const DcFieldName& field : known) names.insert(field.name.c_str(), field.position);
    osnam.clear();
    osnam.seekp(0, std::ios::end);
  }
  if (mainEnd_ % kPtrBytes != 0) return false;
  numDocuments_ = static_cast<int>(mainEnd_ / kPtrBytes);
  listptr = listEnd_;
  return true;
}

DcFieldsCreator::~DcFieldsCreator() {
  restoreTail();
  if (osval.isOpen()) osval.close();
}

void DcFieldsCreator::refreshValid() {
  valid_ = valid_ && osmain.good() && oslist.good() && osnam.good() && osval.isOpen();
}

bool DcFieldsCreator::namePosition(const char* fieldName, uint32* nampos) {
  if (names.find(fieldName, *nampos)) return true;
  if (nameEnd_ >= kNameLimit) return false;
  *nampos = nameEnd_;
  const std::size_t bytes = std::strlen(fieldName) + 1;
  osnam.write(fieldName, static_cast<std::streamsize>(bytes));
  nameEnd_ += static_cast<uint32>(bytes);
  names.insert(fieldName, *nampos);
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
  if (listEnd_ == listptr) nampos |= kFirstRecord;
  const StStoragePos valpos = osval.tell();
  osval.write(fieldValue, static_cast<unsigned>(std::strlen(fieldValue) + 1));
  char record[kRecordBytes];
  storeU16(record, static_cast<std::uint16_t>(nampos));
  storeU32(record + 2, valpos.Hi());
  storeU32(record + 6, valpos.Lo());
  oslist.write(record, kRecordBytes);
  listEnd_ += kRecordBytes;
  refreshValid();
}

void DcFieldsCreator::endDoc() {
  if (!valid_) return;
  ++numDocuments_;
  char entry[kPtrBytes];
  storeU32(entry, listEnd_ != listptr ? listptr : kNoFields);
  osmain.write(entry, kPtrBytes);
  mainEnd_ += kPtrBytes;
  listptr = listEnd_;
  refreshValid();
}

void DcFieldsCreator::flush() {
  if (!valid_) return;
  osmain.flush();
  oslist.flush();
  osnam.flush();
  osval.flush();
  refreshValid();
}

void DcFieldsCreator::restoreTail() {
  if (mainbuf_.empty()) return;
  osmain.write(mainbuf_.data(), static_cast<std::streamsize>(mainbuf_.size()));
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
  osmain.seekg(place);
  osmain.read(mainbuf_.data(), static_cast<std::streamsize>(mainbuf_.size()));
  osmain.seekp(place);
  mainEnd_ = place;
  refreshValid();
  return valid_;
}

}  // namespace vandrelle
