// Reading of the fast form of the field database.

#include <algorithm>
#include <cstring>
#include <fstream>

#include "Document/DcFieldNames.h"
#include "Document/DcFieldsBinder.h"
#include "Document/DcFieldsCreator.h"
#include "Storage/StStorage.h"
#include "Tool/HeapText.h"
#include "Tool/NameManager.h"

namespace vandrelle {

namespace {

// Each name takes 1,024 bytes of memory for its values, so what cannot be names of
// fields is refused.
bool getFastNames(const char* path, std::vector<std::string>* numToName) {
  DcSourceStream file;
  if (!file.open(path)) return false;
  file.seekg(0, std::ios::end);
  if (file.tellg() > std::streamoff{DcFieldsCreator::kNameLimit}) return false;
  file.seekg(0);
  std::vector<DcFieldName> names;
  if (!getNames(file, &names)) return false;
  for (const DcFieldName& field : names) {
    if (field.name.empty()) return false;
    numToName->push_back(field.name);
  }
  return !numToName->empty();
}

}  // namespace

bool DcFieldsBinder::fastFilesOn(const char* root) {
  if (!fastFileRoot_.empty() && fastFileRoot_ == root) return true;
  fastFilesOff();
  if (getFastFiles(root)) return true;
  fastFilesOff();
  return false;
}

bool DcFieldsBinder::getFastFiles(const char* root) {
  const NameManager name(root, 20);
  for (const char* suffix : {".fidx", ".fdat", ".fnam"}) {
    if (!SysTools::fileExists(name.suffix(suffix))) return false;
  }
  std::ifstream sized(name.suffix(".fidx"), std::ios::binary | std::ios::ate);
  const std::streamoff length = sized.tellg();
  if (length < kFastPositionBytes) return false;
  const std::streamoff count = length / kFastPositionBytes;
  if (numDocuments_ == 0) {
    if (length % kFastPositionBytes != 0) return false;
  } else if (count != numDocuments_) {
    return false;
  }

  if (!getFastNames(name.suffix(".fnam"), &numToName_)) return false;

  fastIdx_ = std::make_unique<SysToolsMapObject>(name.suffix(".fidx"), 0, 0);
  fastDat_ = std::make_unique<StStorageStream>(name.suffix(".fdat"),
                                               StStorageStream::kRead | StStorageStream::kExisting);
  numDocuments_ = static_cast<int>(count);
  fastFileRoot_ = root;
  cachedDocNum_ = -1;
  cachedFieldBuf_.resize(numToName_.size() * kValueBytes);
  valid_ = true;
  return true;
}

void DcFieldsBinder::fastFilesOff() {
  fastIdx_.reset();
  fastDat_.reset();
  fastFileRoot_.clear();
  numToName_.clear();
  cachedFieldBuf_.clear();
  cachedDocNum_ = -1;
  if (!slowOpen_) valid_ = false;
}

bool DcFieldsBinder::loadFast(int doc) {
  if (doc == cachedDocNum_) return true;
  const unsigned char* index = static_cast<const unsigned char*>(fastIdx_->addr());
  const StStoragePos position =
      loadFastPosition(index + std::size_t{kFastPositionBytes} * static_cast<std::size_t>(doc));
  if (!fastDat_->seek(position, StStorageStream::kAbsolute)) return false;
  const int got = static_cast<int>(
      fastDat_->read(cachedFieldBuf_.data(), static_cast<unsigned>(cachedFieldBuf_.size())));
  cachedBytes_ = got > 0 ? static_cast<std::size_t>(got) : 0;
  cachedDocNum_ = doc;
  return true;
}

char* DcFieldsBinder::fastValue(const char* strings, std::size_t size, int number) const {
  const char* end = strings + size;
  const char* next = strings;
  for (int i = 0; i < number; ++i) {
    next = static_cast<const char*>(std::memchr(next, '\0', static_cast<std::size_t>(end - next)));
    if (next == nullptr) return nullptr;
    ++next;
  }
  // The buffer ends where it ends, with or without the last value's NUL.
  return copyText(std::string_view(next, ::strnlen(next, static_cast<std::size_t>(end - next))));
}

int DcFieldsBinder::fieldNum(const std::string& name) const {
  const auto found = std::find(numToName_.begin(), numToName_.end(), name);
  return found == numToName_.end() ? -1 : static_cast<int>(found - numToName_.begin());
}

bool DcFieldsBinder::getFastField(DcFieldInfo& field) {
  if (gonum_ < 0) return false;
  if (internalNum_ == static_cast<int>(numToName_.size())) {
    internalNum_ = 0;
    return false;
  }
  if (!loadFast(gonum_)) return false;
  field.value.reset(fastValue(cachedFieldBuf_.data(), cachedBytes_, internalNum_));
  if (!field.value) return false;
  field.name.reset(copyText(numToName_[static_cast<std::size_t>(internalNum_)].c_str()));
  ++internalNum_;
  return true;
}

StStorageBuffer* DcFieldsBinder::getBuffer(int doc) {
  if (fastFileRoot_.empty() || doc < 0 || doc >= numDocuments_) return nullptr;
  const unsigned char* index = static_cast<const unsigned char*>(fastIdx_->addr());
  const StStoragePos begin =
      loadFastPosition(index + std::size_t{kFastPositionBytes} * static_cast<std::size_t>(doc));
  StStorage* storage = fastDat_->storage();
  const StStoragePos size = storage->MaxPos();
  if (!(begin < size)) return nullptr;
  StStoragePos end = begin + static_cast<uint32>(cachedFieldBuf_.size());
  if (size < end) end = size;
  return new StStorageBuffer(begin, (end - begin).Lo(), storage, kStRead, kStDefaultAdvice);
}

char* DcFieldsBinder::retrieve(StStorageBuffer* buffer, const char* fieldName) {
  const int number = fieldNum(convertName(fieldName));
  if (number < 0 || buffer == nullptr) return nullptr;
  return fastValue(reinterpret_cast<const char*>(buffer->Data()), buffer->Length(), number);
}

}  // namespace vandrelle
