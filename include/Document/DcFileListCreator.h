// Writes the file list of an index: which file every document came from. Names
// of one walked directory are stored without it, and it is stored once.
//
// Integers are big-endian; the files have no header.
//
//   <root>.lpt   one record a file, in file-number order
//     0  4  offset of the entry in <root>.lst, signed; -1: the file was removed
//     4  4  number of the file's first document, signed
//
//   <root>.lst   entries, and the size word last
//     2  offset of the directory in <root>.dir, signed; -1: the name is complete
//     n  the name, relative to the directory if there is one
//     1  a blank
//     ...
//     4  total size of all files in kilobytes, unsigned
//   A list that was added to still holds the size word of each earlier run
//   between two entries; only offsets of <root>.lpt lead into the file.
//
//   <root>.dir   directory names, each with "/" at its end and a blank behind;
//                exists only if a directory was added
//
//   <root>.tmp   scratch B-tree, real path with its zero to file number
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <unordered_set>

namespace vandrelle {

class DcFileListReader;
class DcIndexCreator;
class FdBag;

class DcFileListCreator {
 public:
  static constexpr int kPointerSize = 8;  // bytes of a record of <root>.lpt

  // `info` 2 binds to the existing list of `root` and adds to it; any other value
  // makes the list afresh, with the first file. `creator`, not owned, is called
  // back for each entry of a directory. Throws _Exception_ListCr if it cannot
  // bind.
  DcFileListCreator(const char* root, short info, DcIndexCreator* creator);
  ~DcFileListCreator();  // calls Done()
  DcFileListCreator(const DcFileListCreator&) = delete;
  DcFileListCreator& operator=(const DcFileListCreator&) = delete;

  // Is this real path not in the list yet?
  bool NewFile(const char* truepath);
  // Was this real path of a directory not walked yet?
  bool NewDirectory(const char* truepath);

  // Appends a file: its name as given, the number of its first document, its real
  // path and its size in bytes. Throws _Exception_ListCr when the list cannot be
  // made.
  void AddFile(const char* fullFileName, long docNum, const char* truepath, long size);

  // Hands each entry of the directory to the creator, and answers the number of
  // documents that came of them. A directory that cannot be read gives a warning
  // on the error stream and no documents.
  int AddDirectory(const char* dirpath, const char* truepath);

  // Takes a file out of an existing list, by its real path. `*low` and `*high`
  // get its documents as DcFileListReader::nameInfo tells them, or `*low` -1.
  void Remove(const char* fileName, long* low, long* high);

  // 0 for a list that is made afresh.
  long numFiles();

  // Writes the size word and closes the files. Throws _Exception_ListCr if a new
  // list got no file, or when something could not be written.
  void Done();

 private:
  using StreamPtr = std::unique_ptr<std::fstream>;

  void setUp();
  void bindIndex();
  void openDirList();
  int AddDirFiles(const char* dirpath);
  void close(StreamPtr& stream, const std::string& name);

  StreamPtr fileList_;
  StreamPtr ptrList_;
  StreamPtr dirList_;    // made when first needed
  int64_t listEnd_ = 0;  // bytes in fileList_ and dirList_ so far
  int64_t dirEnd_ = 0;
  int64_t lostDirEnd_ = -1;  // of the last directory that was logged as out of reach
  std::unique_ptr<FdBag> newNames_;
  FdBag* tempList_ = nullptr;  // real paths in the list: newNames_, or the reader's
  bool Done_ = false;
  bool newList_ = true;
  bool notEmpty_ = false;
  std::string listName_, ptrName_, dirName_;
  short info_;
  uint32_t totalBytes_ = 0;  // below the kilobyte count
  uint32_t totalK_ = 0;
  std::unique_ptr<DcFileListReader> reader_;  // only while binding
  std::string root_;
  DcIndexCreator* creator_;
  std::string dirpath_;  // outermost directory being walked, "/" at its end; else empty
  std::unordered_set<std::string> directoryBag_;  // real paths
};

}  // namespace vandrelle
