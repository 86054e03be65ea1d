#include "Document/DcFileListCreator.h"

#include <dirent.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <limits>
#include <vector>

#include "Document/DcException.h"
#include "Document/DcFileListReader.h"
#include "Document/DcIndexCreator.h"
#include "Fun/FdBag.h"
#include "Fun/FdDBMManager.h"
#include "Tool/ByteOrder.h"
#include "Tool/SysTools.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

constexpr uint32_t kMebibyte = 1048576;
constexpr auto kCreate = std::ios::out | std::ios::trunc | std::ios::binary;
constexpr auto kExtend = std::ios::in | std::ios::out | std::ios::binary;

int keySize(const char* path) { return static_cast<int>(std::strlen(path)) + 1; }

std::string withSlash(const char* directory) {
  std::string name = directory;
  if (name.empty() || name.back() != '/') name += '/';
  return name;
}

// All entries but "." and "..", in the order in which the system gives them.
// Read whole before the first is used, so that a deep tree holds no more than
// one directory open. False if the directory cannot be opened.
bool entriesOf(const char* dirpath, std::vector<std::string>& entries) {
  DIR* directory = opendir(dirpath);
  if (directory == nullptr) return false;
  errno = 0;
  while (const dirent* entry = readdir(directory)) {
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
      entries.emplace_back(entry->d_name);
    }
  }
  if (errno != 0) {
    LOG(0, 1, "Directory " << dirpath << " could not be read to its end: " << std::strerror(errno));
  }
  closedir(directory);
  return true;
}

}  // namespace

DcFileListCreator::DcFileListCreator(const char* root, short info, DcIndexCreator* creator)
    : listName_(std::string(root) + ".lst"),
      ptrName_(std::string(root) + ".lpt"),
      dirName_(std::string(root) + ".dir"),
      info_(info),
      root_(root),
      creator_(creator) {
  if (info_ == 2) bindIndex();
}

DcFileListCreator::~DcFileListCreator() { Done(); }

void DcFileListCreator::bindIndex() {
  newList_ = false;
  fileList_ = std::make_unique<std::fstream>(listName_, kExtend);
  char sizeWord[4];
  if (!fileList_->seekg(-4, std::ios::end) || !fileList_->read(sizeWord, sizeof sizeWord)) {
    THROW(ListCr, "can't bind to file list");
  }
  totalK_ = loadU32(sizeWord);
  ptrList_ = std::make_unique<std::fstream>(ptrName_, kExtend);
  if (!*ptrList_) THROW(ListCr, "can't bind to ptr list");
  if (SysTools::fileExists(dirName_.c_str())) {
    dirList_ = std::make_unique<std::fstream>(dirName_, kExtend);
    if (!*dirList_) THROW(ListCr, "can't bind to directory file");
  }
  reader_ = std::make_unique<DcFileListReader>(root_.c_str(), ptrList_.get(), fileList_.get(),
                                               dirList_.get());
  tempList_ = reader_->buildNameTable();
  if (fileList_->bad()) THROW(ListCr, "can't bind to file list");
  for (const StreamPtr* stream : {&fileList_, &ptrList_, &dirList_}) {
    if (*stream == nullptr) continue;
    (*stream)->clear();
    (*stream)->seekp(0, std::ios::end);
  }
  listEnd_ = fileList_->tellp();
  if (dirList_ != nullptr) dirEnd_ = dirList_->tellp();
}

bool DcFileListCreator::NewFile(const char* truepath) {
  if (tempList_ == nullptr) return true;
  char fileNumber[4];
  int size = sizeof fileNumber;
  return !tempList_->find(truepath, keySize(truepath), fileNumber, &size);
}

bool DcFileListCreator::NewDirectory(const char* truepath) {
  return directoryBag_.count(truepath) == 0;
}

void DcFileListCreator::setUp() {
  if (notEmpty_ || !newList_) return;
  fileList_ = std::make_unique<std::fstream>(listName_, kCreate);
  if (!*fileList_) THROW(ListCr, "couldn't create file list");
  ptrList_ = std::make_unique<std::fstream>(ptrName_, kCreate);
  if (!*ptrList_) THROW(ListCr, "couldn't create ptr list");
  newNames_.reset(FdDBMManager::Btree((root_ + ".tmp").c_str(), 1));
  tempList_ = newNames_.get();
}

void DcFileListCreator::openDirList() {
  if (dirList_ != nullptr) return;
  dirList_ = std::make_unique<std::fstream>(dirName_, kCreate);
  if (!*dirList_) THROW(ListCr, "can't open dir list");
}

void DcFileListCreator::AddFile(const char* fullFileName, long docNum, const char* truepath,
                                long size) {
  setUp();
  tempList_->insert(truepath, keySize(truepath), nullptr, 0);
  // One subtraction brings a usual file below the bound; larger ones need more.
  uint64_t bytes = totalBytes_ + static_cast<uint64_t>(size);
  for (; bytes > kMebibyte; bytes -= kMebibyte) totalK_ += 1024;
  totalBytes_ = static_cast<uint32_t>(bytes);
  notEmpty_ = true;

  const char* name = fullFileName;
  int16_t dirFileOffset = -1;
  if (!dirpath_.empty()) {
    // The directory's name is written when its whole walk has ended, so it will
    // land at the end of the file as it is now. The field keeps the low 16 bits: past
    // 32767 readers see a negative number and take the relative name as it stands.
    openDirList();
    dirFileOffset = static_cast<int16_t>(dirEnd_);
    if (dirFileOffset != dirEnd_ && lostDirEnd_ != dirEnd_) {
      lostDirEnd_ = dirEnd_;
      LOG(0, 0,
          dirpath_ << " is past the reach of the directory file: its files can't be read back");
    }
    name += dirpath_.size();
  }

  if (listEnd_ > std::numeric_limits<int32_t>::max()) {
    THROW(ListCr, "The file list " << listName_ << " is full: it cannot grow past 2 GiB.");
  }
  char record[kPointerSize];
  storeS32(record, static_cast<int32_t>(listEnd_));
  storeS32(record + 4, static_cast<int32_t>(docNum));
  ptrList_->write(record, sizeof record);
  char offsetBytes[2];
  storeS16(offsetBytes, dirFileOffset);
  fileList_->write(offsetBytes, sizeof offsetBytes);
  *fileList_ << name << ' ';
  listEnd_ += static_cast<int64_t>(sizeof offsetBytes + std::strlen(name) + 1);
}

int DcFileListCreator::AddDirectory(const char* dirpath, const char* truepath) {
  directoryBag_.insert(truepath);
  const bool outermost = dirpath_.empty();
  const int numAdded = AddDirFiles(dirpath);
  if (!outermost) return numAdded;
  dirpath_.clear();
  if (numAdded != 0) {
    openDirList();
    const std::string name = withSlash(dirpath) + ' ';
    *dirList_ << name;
    dirEnd_ += static_cast<int64_t>(name.size());
  }
  return numAdded;
}

int DcFileListCreator::AddDirFiles(const char* dirpath) {
  std::vector<std::string> entries;
  if (!entriesOf(dirpath, entries)) {
    std::cerr << "warning: directory " << dirpath << " can't be opened for reading" << std::endl;
    return 0;
  }
  const std::string prefix = withSlash(dirpath);
  if (dirpath_.empty()) dirpath_ = prefix;
  int numAdded = 0;
  for (const std::string& entry : entries) numAdded += creator_->Add((prefix + entry).c_str());
  return numAdded;
}

void DcFileListCreator::Remove(const char* fileName, long* low, long* high) {
  const long number = reader_ != nullptr ? reader_->nameInfo(fileName, low, high, nullptr) : -1;
  if (number == -1) *low = -1;
  if (number == -1) return;
  // Reading has moved the stream, which goes on at its end in any case.
  ptrList_->clear();
  if (*low >= 0) {
    char fileNumber[4];
    int size = sizeof fileNumber;
    tempList_->remove(fileName, keySize(fileName), fileNumber, &size);
    char removed[4];
    storeS32(removed, -1);
    ptrList_->seekp(number * kPointerSize);
    ptrList_->write(removed, sizeof removed);
  }
  ptrList_->seekp(0, std::ios::end);
}

long DcFileListCreator::numFiles() { return reader_ != nullptr ? reader_->numFiles() : 0; }

void DcFileListCreator::Done() {
  if (Done_) return;
  Done_ = true;
  if (newList_ && !notEmpty_) {
    THROW(ListCr, "no valid files added to index - no index built");
  }
  reader_.reset();
  char sizeWord[4];
  storeU32(sizeWord, totalK_ + (totalBytes_ >> 10));
  fileList_->write(sizeWord, sizeof sizeWord);
  close(fileList_, listName_);
  close(ptrList_, ptrName_);
  close(dirList_, dirName_);
  newNames_.reset();
  tempList_ = nullptr;
  directoryBag_.clear();
}

// A stream that has failed at any time has lost part of the list.
void DcFileListCreator::close(StreamPtr& stream, const std::string& name) {
  if (stream == nullptr) return;
  stream->close();
  if (!*stream) {
    THROW(ListCr, "The file list could not be written to "
                      << name << "; check the free space and the rights of its folder.");
  }
  stream.reset();
}

}  // namespace vandrelle
