#include "Driver/IndexMerger.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <system_error>
#include <utility>

#include "Document/DcDocumentListMerger.h"
#include "Document/DcFieldNames.h"
#include "Document/DcFieldsCreator.h"
#include "Document/DcMetaDocManager.h"
#include "Driver/IndexBuild.h"
#include "Driver/SidePasses.h"
#include "Driver/VymTypes.h"
#include "Exception.h"
#include "Fun/Fd.h"
#include "Index/IkDeleterVector.h"
#include "Index/IkFamily.h"
#include "Index/IkIndex.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkMergeDeleter.h"
#include "Index/IkMergeIndex.h"
#include "Index/IkTransposeMerger.h"
#include "Token/TkStemmer.h"

namespace vandrelle {
namespace {

namespace fs = std::filesystem;

EXCEPTION_FAMILY(Merge);

constexpr const char* kWorkSuffix = ".tmp.merge";
constexpr const char* kFormer = ".former";
constexpr const char* kHeader = ".info";

// What an index cannot be merged without.
constexpr const char* kNeeded[] = {kHeader, ".key", ".ptr",  ".dat",  ".idx",
                                   ".lst",  ".lpt", ".fidx", ".fdat", ".fnam"};
// Words and documents that were added later stand beside the index proper.
constexpr const char* kExtensions[] = {".xw", ".xd", ".xo", ".xt", ".xidx.xw"};

using FileId = std::pair<dev_t, ino_t>;

bool isThere(const std::string& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

bool idOf(const std::string& path, FileId* id) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return false;
  *id = {status.st_dev, status.st_ino};
  return true;
}

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What there is of the index `root`: the files of its folder whose names go on with a
// suffix.
std::vector<fs::path> workFiles(const std::string& root) {
  const fs::path whole(root);
  const fs::path folder = whole.has_parent_path() ? whole.parent_path() : fs::path(".");
  const std::string name = whole.filename().string();
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string file = entry->path().filename().string();
    if (file.size() > name.size() && file.compare(0, name.size(), name) == 0 &&
        (file[name.size()] == '.' || file[name.size()] == '_')) {
      found.push_back(entry->path());
    }
  }
  return found;
}

// A storage that has outgrown one file is a folder.
void removeOrThrow(const std::string& path) {
  std::error_code error;
  fs::remove_all(path, error);
  if (error) THROW(Merge, "'" << path << "' cannot be replaced: " << error.message());
}

// Renames files, and where one cannot be renamed takes all before it back and throws.
class Renaming {
 public:
  void operator()(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (!error) {
      done_.emplace_back(from, to);
      return;
    }
    for (auto move = done_.rbegin(); move != done_.rend(); ++move) {
      std::error_code ignored;
      fs::rename(move->second, move->first, ignored);
    }
    THROW(Merge, "'" << from << "' cannot become '" << to << "': " << error.message());
  }

 private:
  std::vector<std::pair<std::string, std::string>> done_;
};

// The word index ends with the last document that has a word, the document list
// need not. The documents of the next source come behind all of the list.
class KeepsNumbers : public IkMergeDeleter {
 public:
  explicit KeepsNumbers(int wordless) : wordless_(wordless) {}
  int newChunk(int chunk) override { return chunk; }
  // Less than none go.
  int numDeletedChunks() override { return -wordless_; }

 private:
  int wordless_;
};

}  // namespace

IndexMerger::IndexMerger(const std::string& root, const std::vector<std::string>& sources)
    : root_(root), workRoot_(root + kWorkSuffix), sources_(sources) {
  std::set<FileId> headers;
  for (const std::string& source : sources_) {
    checkSource(source);
    FileId id;
    if (idOf(source + kHeader, &id) && !headers.insert(id).second) {
      THROW(Merge, "the index '" << source << "' is named twice");
    }
  }
  checkTarget();
}

void IndexMerger::checkSource(const std::string& source) {
  requireFinished(source);
  for (const char* suffix : kNeeded) {
    if (!isThere(source + suffix)) {
      THROW(Merge, "the index '" << source << "' has no file '" << source << suffix << "'");
    }
  }
  for (const char* suffix : kExtensions) {
    if (isThere(source + suffix)) {
      THROW(Merge, "the index '" << source << "' has been extended; build it anew before merging");
    }
  }
  const bool positions = isThere(source + ".prx") && isThere(source + ".prx.map");
  positions_ = positions_ && positions;
  somePositions_ = somePositions_ || positions;
}

// Also under another name, through a link or as a root that ends in "_one", no file
// of a source may be replaced or removed.
void IndexMerger::checkTarget() const {
  std::set<FileId> read;
  FileId id;
  for (const std::string& source : sources_) {
    if (idOf(source + kHeader, &id)) read.insert(id);
    for (const char* suffix : kIkFamily) {
      if (idOf(source + suffix, &id)) read.insert(id);
    }
  }
  std::vector<std::string> replaced = {root_ + kHeader};
  for (const char* suffix : kIkFamily) replaced.push_back(root_ + suffix);
  for (const fs::path& path : workFiles(workRoot_)) replaced.push_back(path.string());
  for (const std::string& path : replaced) {
    if (idOf(path, &id) && read.count(id) != 0) {
      THROW(Merge, "the new index would replace '" << path << "', a file of one that is merged");
    }
  }
}

void IndexMerger::discard(const std::string& root) {
  for (const fs::path& path : workFiles(root + kWorkSuffix)) {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
}

void IndexMerger::build(TkStemmer* stemmer) {
  discard(root_);
  mergeDocuments();
  mergeFields();
  mergeWords();
  mergeDigests();
  mergeDeletions();
  if (stemmer == nullptr) return;
  NameManager name(workRoot_.c_str(), 20);
  CREATE_UNSTEM_INDEX(&name, stemmer, documents_);
}

void IndexMerger::mergeDocuments() {
  VymTypes types(workRoot_.c_str(), 0);
  DcDocumentListMerger list(workRoot_.c_str(), &types);
  for (const std::string& source : sources_) counts_.push_back(list.addIndex(source.c_str()));
  list.done();
  for (const int count : counts_) documents_ += count;
  repeatedFiles_ = list.repeatedFiles();
}

void IndexMerger::mergeFields() {
  const std::string names = bytesOf(sources_[0] + ".fnam");
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    const std::string& source = sources_[i];
    if (bytesOf(source + ".fnam") != names) {
      THROW(Merge,
            "the indexes '" << sources_[0] << "' and '" << source << "' have different fields");
    }
    std::error_code error;
    if (fs::file_size(source + ".fidx", error) !=
        static_cast<std::uintmax_t>(counts_[i]) * kFastPositionBytes) {
      THROW(Merge,
            "'" << source << ".fidx' doesn't have the fields of " << counts_[i] << " documents");
    }
    if (!DcFieldsCreator::mergeFastFields(source.c_str(), workRoot_.c_str(), nullptr)) {
      THROW(Merge, "the fields of the index '" << source << "' cannot be read");
    }
  }
  std::ofstream file(workRoot_ + ".fnam", std::ios::binary | std::ios::trunc);
  if (!(file << names).flush()) THROW(Merge, "'" << workRoot_ << ".fnam' cannot be written");
}

void IndexMerger::mergeWords() {
  VymTypes types(workRoot_.c_str(), 0);
  TkPassStem stemmer;
  DcMetaDocManager documents(workRoot_.c_str(), &stemmer, nullptr, &types);
  std::ofstream size(workRoot_ + ".size");
  if (!(size << documents.corpusSize()).flush()) {
    THROW(Merge, "'" << workRoot_ << ".size' cannot be written");
  }
  const std::unique_ptr<IkIndex> index(IkIndex::index(workRoot_.c_str()));
  index->recordProximity(positions_);
  index->setOptions(&documents);

  const std::unique_ptr<FdBag> roots(Fd::Queue());
  std::vector<std::unique_ptr<IkMergeDeleter>> kept;
  std::vector<IkMergeDeleter*> deleters;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    const std::string& source = sources_[i];
    IkIndexInfo info;
    info.read((source + kHeader).c_str());
    if (i == 0) {
      index->numDigestWords(info.numDigestWords);
      index->minDocumentLength(info.minDocumentLength);
    }
    if (info.numDigestWords != index->numDigestWords() ||
        info.minDocumentLength != index->minDocumentLength() ||
        info.similarityVersion != index->similarityVersion()) {
      THROW(Merge, "the index '" << source << "' was built with other weights than the rest");
    }
    if (info.totalNumChunks < 0 || info.totalNumChunks > counts_[i]) {
      THROW(Merge, "the index '" << source << "' has words of more documents than it lists");
    }
    // Nothing comes behind the last source.
    const int wordless = i + 1 < sources_.size() ? counts_[i] - info.totalNumChunks : 0;
    kept.push_back(std::make_unique<KeepsNumbers>(wordless));
    deleters.push_back(kept.back().get());
    roots->insert(source.c_str(), static_cast<int>(source.size()) + 1, nullptr, 0);
  }
  index->mergeAdditive(roots.get(), 1, deleters.data());
}

void IndexMerger::mergeDigests() {
  IkTransposeMerger digests(workRoot_.c_str());
  int first = 0;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    const std::string numbers = IkMergeIndex::newWordNumbersFile(workRoot_, static_cast<int>(i));
    digests.addIndex(sources_[i].c_str(), numbers.c_str(), first);
    removeOrThrow(numbers);
    first += counts_[i];
  }
  digests.done();
  IkIndexInfo info;
  info.read((workRoot_ + kHeader).c_str());
  words_ = info.numTerms;
}

// The rows have lost the deleted documents already; who changes the new index counts
// on the list.
void IndexMerger::mergeDeletions() {
  std::unique_ptr<IkDeleterVector> merged;
  int first = 0;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    const std::unique_ptr<IkDeleterVector> source(IkDeleterVector::Bind(sources_[i].c_str(), 0, 1));
    for (int doc = 0; source != nullptr && doc < counts_[i]; ++doc) {
      if (!source->isDeleted(doc)) continue;
      if (!merged) merged.reset(IkDeleterVector::Create(workRoot_.c_str(), documents_, 0));
      merged->deleteDocument(first + doc);
    }
    first += counts_[i];
  }
  if (!merged) return;
  merged->done();
  merged->freeze();
}

void IndexMerger::moveIntoPlace() {
  const std::string former = workRoot_ + kFormer;
  Renaming rename;
  if (isThere(root_ + kHeader)) rename(root_ + kHeader, former + kHeader);
  for (const char* suffix : kIkFamily) {
    if (isThere(root_ + suffix)) rename(root_ + suffix, former + suffix);
  }
  for (const char* suffix : kIkFamily) {
    if (isThere(workRoot_ + suffix)) rename(workRoot_ + suffix, root_ + suffix);
  }
  rename(workRoot_ + kHeader, root_ + kHeader);
  discard(root_);
}

}  // namespace vandrelle
