#include "Document/DcFileListReader.h"

#include <limits.h>
#include <stdlib.h>

#include <cstring>
#include <iomanip>

#include "Document/DcFileListCreator.h"
#include "Fun/FdBag.h"
#include "Fun/FdDBMManager.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"
#include "Tool/SysTools.h"

namespace vandrelle {
namespace {

// Positions a stream for reading. A list is mostly read in order, one blank
// between entries; a seek would throw the stream's buffer away.
void readAt(std::fstream& stream, long position) {
  stream.clear();
  const long here = static_cast<long>(stream.tellg());
  if (here == position) return;
  if (here == position - 1) {
    stream.get();
  } else {
    stream.seekg(position);
  }
}

// False at the end of the stream, with `value` untouched.
bool readInt32(std::fstream& stream, int32_t& value) {
  char bytes[4];
  if (!stream.read(bytes, sizeof bytes)) return false;
  value = loadS32(bytes);
  return true;
}

}  // namespace

DcFileListReader::DcFileListReader(const char* root, std::fstream* ptrList, std::fstream* fileList,
                                   std::fstream* dirList)
    : ptrList_(ptrList),
      fileList_(fileList),
      dirList_(dirList),
      treeName_(root),
      blockSize_(DcFileListCreator::kPointerSize) {
  treeName_ += ".tmp";
}

DcFileListReader::~DcFileListReader() {
  if (nameTable_ == nullptr) return;
  delete nameTable_;
  SysTools::removeFile(treeName_.c_str());
}

FdBag* DcFileListReader::buildNameTable() {
  if (nameTable_ == nullptr) {
    // What a run that was cut short left behind is no table of this list.
    SysTools::removeFile(treeName_.c_str());
    nameTable_ = FdDBMManager::Btree(treeName_.c_str(), 0);
    ptrList_->clear();
    ptrList_->seekg(0);
    readNames();
  }
  return nameTable_;
}

void DcFileListReader::readNames() {
  const long files = numFiles();
  char realName[PATH_MAX];
  for (long number = 0; number < files; ++number) {
    readAt(*ptrList_, number * blockSize_);
    const HeapAptr<char> name(readName());
    if (name.get() == nullptr) continue;
    const char* key = realpath(name.get(), realName) != nullptr ? realName : name.get();
    char data[4];
    storeS32(data, static_cast<int32_t>(number));
    nameTable_->insert(key, static_cast<int>(std::strlen(key)) + 1, data, sizeof data);
  }
}

char* DcFileListReader::readName() {
  int32_t offset = -1;
  if (!readInt32(*ptrList_, offset) || offset < 0) return nullptr;
  readAt(*fileList_, offset);
  char offsetBytes[2];
  if (!fileList_->read(offsetBytes, sizeof offsetBytes)) return nullptr;
  const int16_t dirOffset = loadS16(offsetBytes);
  const bool relative = dirOffset >= 0 && dirList_ != nullptr;
  if (relative && dirOffset != oldDirOffset_) {
    oldDirOffset_ = dirOffset;
    dirName_.clear();
    readAt(*dirList_, dirOffset);
    *dirList_ >> std::setw(PATH_MAX) >> dirName_;
  }
  std::string name;
  *fileList_ >> std::setw(PATH_MAX) >> name;
  if (relative) name.insert(0, dirName_);
  return copyText(name);
}

long DcFileListReader::nameInfo(const char* name, long* low, long* high, long* /*date*/) {
  char data[4];
  int size = sizeof data;
  if (!buildNameTable()->find(name, static_cast<int>(std::strlen(name)) + 1, data, &size) ||
      size != sizeof data) {
    return -1;
  }
  const long number = loadS32(data);
  if (low != nullptr) *low = GetFirstDoc(number);
  if (high != nullptr) *high = GetFirstDoc(number + 1) - 1;
  return number;
}

long DcFileListReader::numFiles() {
  ptrList_->clear();
  ptrList_->seekg(0, std::ios::end);
  return static_cast<long>(ptrList_->tellg()) / blockSize_;
}

long DcFileListReader::GetFirstDoc(long num) {
  if (num < 0 || num >= numFiles()) return -1;
  readAt(*ptrList_, num * blockSize_ + 4);
  int32_t firstDoc = -1;
  readInt32(*ptrList_, firstDoc);
  return firstDoc;
}

}  // namespace vandrelle
