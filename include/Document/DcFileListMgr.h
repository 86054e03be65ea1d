// Maps the file numbers of an index to file names and back.
#pragma once

#include <fstream>
#include <memory>

namespace vandrelle {

class DcFileListReader;

class DcFileListMgr {
 public:
  // Without both <root>.lst and <root>.lpt there is no list. Throws
  // _Exception_ListMgr when a file is there but cannot be opened.
  explicit DcFileListMgr(const char* root);
  ~DcFileListMgr();
  DcFileListMgr(const DcFileListMgr&) = delete;
  DcFileListMgr& operator=(const DcFileListMgr&) = delete;

  // Only filesExist() may be called in an index without a list.
  bool filesExist() const { return filesExist_; }
  long numFiles();

  // A new array that the caller owns; null for a removed or unknown file.
  char* numToName(int filenum);

  // Size of all files in kilobytes.
  long corpusSize();

  // First and last document of the named file; `high` is negative for the last
  // file of the list. `low` and `high` may be null, `date` is not filled. True
  // if the file is in the list.
  bool nameInfo(const char* name, long* low, long* high, long* date);

  // Number of the file's first document; -1 past the end of the list.
  long GetFirstDoc(long filenum);

 private:
  bool filesExist_ = false;
  std::unique_ptr<std::fstream> ptrList_;
  std::unique_ptr<std::fstream> fileList_;
  std::unique_ptr<std::fstream> dirList_;
  std::unique_ptr<DcFileListReader> reader_;
};

}  // namespace vandrelle
