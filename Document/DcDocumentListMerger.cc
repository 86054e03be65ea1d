#include "Document/DcDocumentListMerger.h"

#include <limits.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>

#include "Document/DcException.h"
#include "Document/DcFileListCreator.h"
#include "Document/DcMetaDocManager.h"
#include "Document/DcMultiDocManager.h"
#include "Document/DcOneDocManager.h"
#include "Tool/ByteOrder.h"
#include "Tool/SysTools.h"
#include "Tool/VersionControl.h"

namespace vandrelle {
namespace {

constexpr const char* kSuffixes[] = {".idx", "_one.idx", "_mlt.idx", ".lpt", ".lst", ".dir"};
constexpr int kRowSize = DcMetaDocManager::kRowSize;
constexpr int kTrailerSize = DcTrailer::kBytes;
constexpr int kPointerSize = DcFileListCreator::kPointerSize;
constexpr int kOneRecord = DcOneDocManager::kRecordSize;
constexpr int kSizeWord = 4;
constexpr int kDirOffset = 2;
constexpr int kShortestEntry = kDirOffset + 1;
constexpr int32_t kRemoved = -1;
constexpr int32_t kMostEntries = std::numeric_limits<int32_t>::max();
constexpr int64_t kMaxList = std::numeric_limits<int32_t>::max();
constexpr int64_t kMaxDirectory = std::numeric_limits<int16_t>::max();

[[noreturn]] void damaged(const std::string& path, const char* what) {
  THROW(indexmgr, "The document list " << path << " is damaged: " << what);
}

// A file that is read from front to end.
class Input {
 public:
  explicit Input(const std::string& path) : path_(path), stream_(path, std::ios::binary) {
    stream_.seekg(0, std::ios::end);
    size_ = static_cast<int64_t>(stream_.tellg());
    if (!stream_) THROW(indexmgr, "The document list " << path << " cannot be opened for reading.");
    stream_.seekg(0);
  }
  const std::string& path() const { return path_; }
  int64_t size() const { return size_; }
  void seek(int64_t position) { stream_.seekg(position); }
  void read(char* bytes, std::size_t length) {
    stream_.read(bytes, static_cast<std::streamsize>(length));
    if (!stream_) THROW(indexmgr, "The document list " << path_ << " cannot be read to its end.");
  }

 private:
  std::string path_;
  std::ifstream stream_;
  int64_t size_ = 0;
};

bool isThere(const std::string& path) { return SysTools::fileExists(path.c_str()); }

// What a reader of names finds at `from`: up to white space, as `>>` reads it.
std::string_view wordAt(const std::string& text, std::size_t from) {
  constexpr const char* kSpaces = " \t\n\v\f\r";
  const std::size_t begin = text.find_first_not_of(kSpaces, from);
  if (begin == std::string::npos) return {};
  return std::string_view(text).substr(begin, text.find_first_of(kSpaces, begin) - begin);
}

}  // namespace

struct DcDocumentListMerger::Source {
  explicit Source(const std::string& name)
      : root(name), rows(name + ".idx"), pointers(name + ".lpt"), names(name + ".lst") {
    if (!isThere(name + ".dir")) return;
    Input file(name + ".dir");
    // No entry reaches further than this, and no name is longer.
    directories.resize(static_cast<std::size_t>(
        std::min<int64_t>(file.size(), kMaxDirectory + int64_t{PATH_MAX})));
    file.read(directories.data(), directories.size());
    hasDirectories = true;
  }

  std::string root;
  Input rows;
  Input pointers;
  Input names;
  bool hasDirectories = false;
  std::string directories;
  int64_t documents = 0;
  int64_t numFiles = 0;
  DcTrailer next;
  int64_t bytes = 0;  // of its files of one document
};

DcDocumentListMerger::DcDocumentListMerger(const char* root, DcUserTypes* types)
    : root_(root), chooser_(root, types, nullptr, nullptr) {
  for (const File file : {kRows, kPointers, kNames}) write(file, "", 0);
}

void DcDocumentListMerger::notWritten(File file) const {
  THROW(indexmgr, "The document list could not be written to "
                      << root_ << kSuffixes[file]
                      << "; check the free space and the rights of its folder.");
}

// The first call makes the file, also one without bytes.
void DcDocumentListMerger::write(File file, const char* bytes, std::size_t length) {
  std::ofstream& stream = files_[file];
  if (!stream.is_open()) {
    stream.open(root_ + kSuffixes[file], std::ios::binary | std::ios::trunc);
  }
  if (!stream.write(bytes, static_cast<std::streamsize>(length))) notWritten(file);
  written_[file] += static_cast<int64_t>(length);
}

int DcDocumentListMerger::addIndex(const char* root) {
  Source source(root);
  source.documents = (source.rows.size() - kTrailerSize) / kRowSize;
  source.numFiles = source.pointers.size() / kPointerSize;
  if (source.rows.size() < kTrailerSize ||
      source.documents * kRowSize + kTrailerSize != source.rows.size()) {
    damaged(source.rows.path(), "it doesn't end with a whole trailer");
  }
  if (source.numFiles * kPointerSize != source.pointers.size()) {
    damaged(source.pointers.path(), "an entry is cut off");
  }
  if (source.names.size() < kSizeWord) damaged(source.names.path(), "it has no end");
  if (documents_ + source.documents > kMostEntries ||
      written_[kPointers] / kPointerSize + source.numFiles > kMostEntries) {
    THROW(indexmgr, "The indexes have more than " << kMostEntries << " documents together.");
  }
  char trailer[kTrailerSize];
  source.rows.seek(source.documents * kRowSize);
  source.rows.read(trailer, sizeof trailer);
  source.next.load(trailer);
  for (const int32_t number : source.next.userCreatorNums_) {
    if (number == 0) continue;
    THROW(indexmgr, "The index " << root << " holds documents in a form of an application's own, "
                                 << "which only that can merge.");
  }
  if (source.next.oneDocNum_ < 0 || source.next.multiDocNum_ < 0 ||
      next_.oneDocNum_ > kMostEntries - source.next.oneDocNum_ ||
      next_.multiDocNum_ > kMostEntries - source.next.multiDocNum_) {
    damaged(source.rows.path(), "it counts more documents than there can be");
  }

  addRows(&source);
  addForm(&source, kOne, source.next.oneDocNum_, kOneRecord);
  addForm(&source, kMulti, source.next.multiDocNum_, DcMultiDocManager::kRecordSize);
  addFiles(&source);
  documents_ += source.documents;
  next_.oneDocNum_ += source.next.oneDocNum_;
  next_.multiDocNum_ += source.next.multiDocNum_;
  return static_cast<int>(source.documents);
}

void DcDocumentListMerger::addRows(Source* source) {
  const int64_t firstFile = written_[kPointers] / kPointerSize;
  source->rows.seek(0);
  for (int64_t i = 0; i < source->documents; ++i) {
    char row[kRowSize];
    source->rows.read(row, sizeof row);
    const int32_t type = loadS32(row);
    const int32_t num = loadS32(row + 4);
    const int32_t file = loadS32(row + 8);
    if (type <= DcDataType::kExcluded || type >= DcDataType::kFirstUserForm || file < 0 ||
        file >= source->numFiles) {
      damaged(source->rows.path(), "a document has a type or a file that cannot be");
    }
    // A form of its own has no numbers.
    if (!chooser_.nonStdType(type)) {
      const bool multi = chooser_.multiDocFiles(type) != 0;
      if (num < 0 || num >= (multi ? source->next.multiDocNum_ : source->next.oneDocNum_)) {
        damaged(source->rows.path(), "a document has a number that its form hasn't got");
      }
      storeS32(row + 4, num + (multi ? next_.multiDocNum_ : next_.oneDocNum_));
    }
    storeS32(row + 8, static_cast<int32_t>(file + firstFile));
    write(kRows, row, sizeof row);
  }
}

// Records of articles are 8 bytes long where a type has no header parser, and are
// read at a stride of 12 all the same: the file becomes that of a single run.
void DcDocumentListMerger::addForm(Source* source, File form, int32_t documents, int recordSize) {
  const std::string path = source->root + kSuffixes[form];
  if (documents == 0 && !isThere(path)) return;
  Input records(path);
  const int64_t most = int64_t{documents} * recordSize;
  if (records.size() < int64_t{documents} * kOneRecord || records.size() > most ||
      records.size() % 4 != 0) {
    damaged(path, "it doesn't have a record for each document");
  }
  write(form, "", 0);
  for (int64_t at = 0; at < records.size(); at += kOneRecord) {
    char record[kOneRecord];
    const auto length =
        static_cast<std::size_t>(std::min<int64_t>(kOneRecord, records.size() - at));
    records.read(record, length);
    write(form, record, length);
    if (form == kOne) source->bytes += std::max(loadS32(record), 0);
  }
}

void DcDocumentListMerger::addFiles(Source* source) {
  std::vector<char> pointers(static_cast<std::size_t>(source->pointers.size()));
  source->pointers.read(pointers.data(), pointers.size());
  const int64_t listEnd = source->names.size() - kSizeWord;
  const auto offsetOf = [&](int64_t i) -> int64_t {
    return i < source->numFiles ? loadS32(&pointers[static_cast<std::size_t>(i * kPointerSize)])
                                : listEnd;
  };
  int64_t place = 0;  // in the source's names
  for (int64_t i = 0; i < source->numFiles; ++i) {
    const int32_t firstDoc = loadS32(&pointers[static_cast<std::size_t>(i * kPointerSize + 4)]);
    if (firstDoc < 0 || firstDoc > source->documents) {
      damaged(source->pointers.path(), "a file begins with a document that isn't there");
    }
    const int64_t begin = offsetOf(i);
    if (begin < 0) {
      writePointer(kRemoved, firstDoc);
      continue;
    }
    // The entry reaches up to that of the next file that hasn't been removed.
    int64_t next = i + 1;
    while (offsetOf(next) < 0) ++next;
    const int64_t length = offsetOf(next) - begin;
    if (begin < place || length < kShortestEntry || begin + length > listEnd) {
      damaged(source->pointers.path(), "the names of its files overlap");
    }
    if (begin != place) source->names.seek(begin);
    place = begin + length;
    std::string entry(static_cast<std::size_t>(length), '\0');
    source->names.read(entry.data(), entry.size());
    if (written_[kNames] > kMaxList) {
      THROW(indexmgr, "The file list " << root_ << ".lst is full: it cannot grow past 2 GiB.");
    }
    writePointer(static_cast<int32_t>(written_[kNames]), firstDoc);
    addName(source, std::move(entry));
  }
  // The list counts kilobytes; bytes are known where each file is one document.
  source->names.seek(listEnd);
  char sizeWord[kSizeWord];
  source->names.read(sizeWord, sizeof sizeWord);
  const int64_t kilobytes = loadU32(sizeWord);
  sourceBytes_ += source->bytes >> 10 == kilobytes ? source->bytes : kilobytes << 10;
}

void DcDocumentListMerger::addName(Source* source, std::string entry) {
  const int16_t offset = loadS16(entry.data());
  std::string_view name = wordAt(entry, kDirOffset);
  std::string whole(name);
  if (offset >= 0) {
    // Without directories, and past their end, readers take the name as it stands.
    const std::string_view text = wordAt(source->directories, static_cast<std::size_t>(offset));
    const std::string path(source->hasDirectories ? text : std::string_view());
    whole.insert(0, path);
    const int16_t place = path.empty() ? int16_t{-1} : directory(path);
    storeS16(entry.data(), place);
    if (place < 0) entry.insert(kDirOffset, path);
  }
  nameHashes_.push_back(std::hash<std::string>()(whole));
  write(kNames, entry.data(), entry.size());
}

// The place of a directory in the new .dir; -1 when that is full.
int16_t DcDocumentListMerger::directory(const std::string& name) {
  const auto known = directories_.find(name);
  if (known != directories_.end()) return known->second;
  if (written_[kDirectories] > kMaxDirectory) return -1;
  const auto place = static_cast<int16_t>(written_[kDirectories]);
  directories_.emplace(name, place);
  write(kDirectories, (name + ' ').data(), name.size() + 1);
  return place;
}

void DcDocumentListMerger::writePointer(int32_t offset, int64_t firstDoc) {
  char record[kPointerSize];
  storeS32(record, offset);
  storeS32(record + 4, static_cast<int32_t>(documents_ + firstDoc));
  write(kPointers, record, sizeof record);
}

void DcDocumentListMerger::done() {
  char trailer[kTrailerSize];
  next_.store(trailer);
  write(kRows, trailer, sizeof trailer);
  char sizeWord[kSizeWord];
  storeU32(sizeWord, static_cast<uint32_t>(sourceBytes_ >> 10));
  write(kNames, sizeWord, sizeof sizeWord);
  for (int file = 0; file < kFiles; ++file) {
    if (!files_[file].is_open()) continue;
    files_[file].close();
    if (!files_[file]) notWritten(static_cast<File>(file));
  }
  VersionControl::setVersion(root_.c_str(), 0, 1);

  std::sort(nameHashes_.begin(), nameHashes_.end());
  const auto distinct = std::unique(nameHashes_.begin(), nameHashes_.end());
  repeatedFiles_ = static_cast<long>(nameHashes_.end() - distinct);
}

}  // namespace vandrelle
