// Reads the file list of an index (the files are drawn in DcFileListCreator.h):
// a file number to its name and first document, and a name to its number.
// Serves DcFileListMgr, and DcFileListCreator when it adds to an existing list.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

namespace vandrelle {

class FdBag;

class DcFileListReader {
 public:
  // The streams must be open for reading, binary; they are not owned and must
  // outlive the reader. `dirList` is null for a list without directories.
  // `root` is the root name of the index, copied.
  DcFileListReader(const char* root, std::fstream* ptrList, std::fstream* fileList,
                   std::fstream* dirList);
  // Removes the scratch table, if it was built.
  ~DcFileListReader();
  DcFileListReader(const DcFileListReader&) = delete;
  DcFileListReader& operator=(const DcFileListReader&) = delete;

  // Builds the table from real paths to file numbers as a B-tree <root>.tmp, and
  // answers it; the reader owns it.
  FdBag* buildNameTable();

  // Enters all names of the list into the table. Removed files are left out and
  // keep their numbers.
  void readNames();

  // The name of the file whose record `ptrList` stands at: a new string, or null
  // for a removed file, one past the end, or a record that leads nowhere. A name
  // ends at its first white space, so a path that holds a blank comes back cut
  // there. Leaves `ptrList` 4 bytes into the record.
  char* readName();

  // The number of the file with this real path, or -1. `low` and `high`, which
  // may be null, get its first and last document; for the last file of the list
  // `high` is negative, and the caller puts the index's last document in its
  // place. `date` is not filled. Builds the name table if need be.
  long nameInfo(const char* name, long* low, long* high, long* date);

  long numFiles();

  // Number of the file's first document, -1 at or past the end of the list.
  long GetFirstDoc(long num);

 private:
  FdBag* nameTable_ = nullptr;
  std::fstream* ptrList_;
  std::fstream* fileList_;
  std::fstream* dirList_;
  int32_t oldDirOffset_ = -2;  // of dirName_; -2 is no offset that a file holds
  std::string dirName_;
  std::string treeName_;
  int16_t blockSize_;  // bytes of a record of ptrList_
};

}  // namespace vandrelle
