// Joins the document lists of several indexes into that of a new one: the
// documents and files of each follow those of the one before, as if all had been
// added in one run. Written are <root>.idx (see DcMetaDocManager.h), _one.idx,
// _mlt.idx, the file list (see DcFileListCreator.h) and .ver.
//
// Each list is read once from front to end, and only read. Names are taken as
// they stand: the files themselves are not looked at.
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "Document/DcChooser.h"

namespace vandrelle {

class DcDocumentListMerger {
 public:
  // Makes the files of `root` anew. `types`, not owned, may be null. Throws, as all
  // operations do, _Exception_indexmgr.
  DcDocumentListMerger(const char* root, DcUserTypes* types);
  DcDocumentListMerger(const DcDocumentListMerger&) = delete;
  DcDocumentListMerger& operator=(const DcDocumentListMerger&) = delete;

  // Appends the documents of the index `root`; how many. A list that contradicts
  // itself throws.
  int addIndex(const char* root);

  // Writes what stands behind the last entries. To be called once, at the end.
  void done();

  // Files whose name was listed before: their documents are twice in the new
  // index. Only after done().
  long repeatedFiles() const { return repeatedFiles_; }

 private:
  struct Source;
  // The files that are written, in the order of their suffixes in the source.
  enum File { kRows, kOne, kMulti, kPointers, kNames, kDirectories, kFiles };

  void addRows(Source* source);
  void addForm(Source* source, File form, int32_t documents, int recordSize);
  void addFiles(Source* source);
  void addName(Source* source, std::string entry);
  int16_t directory(const std::string& name);
  void write(File file, const char* bytes, std::size_t length);
  void writePointer(int32_t offset, int64_t firstDoc);
  [[noreturn]] void notWritten(File file) const;

  std::string root_;
  DcChooser chooser_;
  std::ofstream files_[kFiles];
  int64_t written_[kFiles] = {};  // bytes
  int64_t documents_ = 0;
  DcTrailer next_;
  int64_t sourceBytes_ = 0;                     // of all files listed
  std::map<std::string, int16_t> directories_;  // name to place in .dir
  std::vector<std::size_t> nameHashes_;
  long repeatedFiles_ = 0;
};

}  // namespace vandrelle
