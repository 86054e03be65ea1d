#include "Index/IkLocalIndexBinder.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

#include "Fast/FiStemTable.h"
#include "Index/IkDataFileBinder.h"
#include "Index/IkException.h"
#include "Index/IkIdfBinder.h"
#include "Index/IkIdfCache.h"
#include "Index/IkLocalRetriever.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkProxBinder.h"
#include "Index/IkTranspose.h"
#include "Index/IkTransposeLoader.h"
#include "Index/IkUnstemmer.h"
#include "Index/QaBinder.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Storage/StFileStorage.h"

namespace vandrelle {

namespace {

// Digests of the older layout that are kept in memory.
constexpr int kOldTransposeCache = 128;
// Larger files of digests are of the newer layout, and aren't checked.
constexpr std::uint64_t kMaxCheckedTranspose = 0x7FFF0000;

// Maps a file that must have at least `bytes` bytes; nothing if those are 0.
void mapArray(SysToolsMapObject* map, const char* filename, std::int64_t bytes) {
  if (bytes <= 0) return;
  map->bind(filename);
  if (map->len() < bytes) {
    THROW(Ik, "'" << filename << "' is shorter than the index has documents");
  }
}

// Is `directory` the directory `path` or below it, with links and dots resolved?
bool isUnder(const std::string& directory, const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(directory.c_str(), nullptr),
                                                         &std::free);
  const std::unique_ptr<char, decltype(&std::free)> safe(realpath(path.c_str(), nullptr),
                                                         &std::free);
  if (real == nullptr || safe == nullptr) return false;
  const std::size_t length = std::strlen(safe.get());
  if (std::strncmp(real.get(), safe.get(), length) != 0) return false;
  return real.get()[length] == '\0' || real.get()[length] == '/' || safe.get()[length - 1] == '/';
}

}  // namespace

DEFINE_DESCRIPTOR(IkIndexBinder);
DEFINE_DESCRIPTOR(IkLocalIndexBinder);

IkLocalIndexBinder::IkLocalIndexBinder(const char* rootname, DcDocumentManager* doc)
    : name_(rootname), docmgr_(doc) {}

IkLocalIndexBinder::~IkLocalIndexBinder() = default;

IkIndexInfo* IkLocalIndexBinder::info() {
  if (info_ == nullptr) {
    auto info = std::make_unique<IkIndexInfo>();
    info->read(name_.suffix(".info"));
    info_ = std::move(info);
  }
  return info_.get();
}

IkDataFileBinder* IkLocalIndexBinder::indexData(int writable, int mmapped) {
  if (indexData_ == nullptr) {
    auto binder = std::make_unique<IkDataFileBinder>();
    const std::string root = name_.suffix(nullptr);
    if (mmapped) {
      binder->mmap(root.c_str());
    } else {
      binder->bind(root.c_str(), writable, 0);
    }
    binder->structureMap(structureMap_);
    indexData_ = std::move(binder);
  }
  return indexData_.get();
}

KdFileAccessor* IkLocalIndexBinder::keyfile(int mapped) {
  if (keyfile_ == nullptr) {
    keyfile_.reset(
        KfKeyFileManager::KdBind(name_.suffix(nullptr), mapped ? kKdMapped : kKdMappedPointers));
  }
  return keyfile_.get();
}

IkWordTable* IkLocalIndexBinder::wordTable() {
  if (wordTable_ == nullptr) {
    wordTable_ = std::make_unique<IkLocalWordTable>(keyfile(), indexData(0, 0)->extender());
  }
  return wordTable_.get();
}

const unsigned char* IkLocalIndexBinder::normfile() {
  if (normmap_ == nullptr) {
    auto map = std::make_unique<SysToolsMapObject>();
    mapArray(map.get(), name_.suffix(".norm"), info()->totalNumChunks);
    normmap_ = std::move(map);
  }
  return static_cast<const unsigned char*>(normmap_->addr());
}

const float* IkLocalIndexBinder::sumfile() {
  if (sumfile_ == nullptr) {
    SysToolsMapObject map;
    const std::int64_t documents = info()->totalNumChunks;
    mapArray(&map, name_.suffix(".sum"), documents * 4);
    auto sums = std::make_unique<std::vector<float>>();
    if (map.addr() != nullptr) {
      sums->resize(static_cast<std::size_t>(map.len()) / 4);
      loadFloats(map.addr(), sums->size(), sums->data());
    }
    sumfile_ = std::move(sums);
  }
  return sumfile_->empty() ? nullptr : sumfile_->data();
}

IkIdfBinder* IkLocalIndexBinder::idfBinder() {
  if (idfBinder_ == nullptr) {
    idfBinder_ = std::make_unique<IkIdfBinder>(info(), name_.suffix(".idf"));
  }
  return idfBinder_.get();
}

IkIdfCache* IkLocalIndexBinder::idfCache() {
  if (idfCache_ == nullptr) {
    idfCache_ = std::make_unique<IkIdfCache>(wordTable(), indexData(0, 0));
  }
  return idfCache_.get();
}

QaBinder* IkLocalIndexBinder::queryAccelBinder(int map) {
  if (queryAccelBinder_ == nullptr) {
    const std::string root = name_.suffix(nullptr);
    if (!QaBinder::exists(root.c_str())) return nullptr;
    auto binder = std::make_unique<QaBinder>();
    binder->bind(this, root.c_str(), map);
    queryAccelBinder_ = std::move(binder);
  }
  return queryAccelBinder_.get();
}

IkTranspose* IkLocalIndexBinder::transpose() {
  if (transpose_ != nullptr) return transpose_.get();
  if (info()->totalNumChunks < 0 || info()->numDigestWords < 0) {
    THROW(Ik, "Invalid transpose file!");
  }
  auto transpose = std::make_unique<IkTranspose>(info()->totalNumChunks, info()->numDigestWords);
  const std::string filename = name_.suffix(".trp");
  if (transposeCacheSize_ != 0 && !SysTools::fileExists(filename.c_str())) {
    if (docmgr_ == nullptr) {
      THROW(Ik, "'" << filename << "' doesn't exist, and no documents are bound to make up for it");
    }
    transpose->dynamicCache(this, docmgr_, transposeCacheSize_);
  } else if (transposeEntrySize(filename) == IkOldTransposeLoader::kEntryBytes) {
    transpose->externalCache(new IkOldTransposeLoader(filename.c_str(), info()->numDigestWords),
                             kOldTransposeCache);
  } else if (transposeCacheSize_ == 0) {
    transpose->map(filename.c_str());
  } else {
    transpose->cache(filename.c_str(), transposeCacheSize_);
  }
  transpose_ = std::move(transpose);
  return transpose_.get();
}

// The bytes of an entry, by the size of the file.
int IkLocalIndexBinder::transposeEntrySize(const std::string& filename) {
  StFileStorage file(filename.c_str(), true);
  file.Open(false, false);
  const std::uint64_t size = file.MaxPos().Bytes();
  if (size >= kMaxCheckedTranspose) return IkTranspose::kEntryBytes;
  const auto documents = static_cast<std::uint64_t>(std::max(info()->totalNumChunks, 1));
  const auto words = static_cast<std::uint64_t>(std::max(info()->numDigestWords, 1));
  if (size % documents != 0 || size / documents % words != 0) {
    THROW(Ik, "Invalid transpose file!");
  }
  const std::uint64_t entry = size / documents / words;
  if (entry != IkTranspose::kEntryBytes && entry != IkOldTransposeLoader::kEntryBytes) {
    THROW(Ik, "Invalid transpose entry size!");
  }
  return static_cast<int>(entry);
}

IkLocalRetriever* IkLocalIndexBinder::localRetriever() {
  if (retriever_ == nullptr) {
    const std::string latest = name_.suffix(".latest.info");
    IkIndexInfo latestInfo;
    if (SysTools::fileExists(latest.c_str())) latestInfo.read(latest.c_str());
    IkIndexInfo* const indexInfo = info();
    IkDataFileBinder* const data = indexData(0, 0);
    IkWordTable* const words = wordTable();
    const unsigned char* const norms = normfile();
    QaBinder* const accelerator = queryAccelBinder(0);
    // All that may throw lies behind.
    retriever_ = std::make_unique<IkLocalRetriever>();
    retriever_->info(indexInfo);
    retriever_->indexData(data);
    retriever_->wordTable(words);
    retriever_->normfile(norms);
    retriever_->qaBinder(accelerator);
    retriever_->maxDocs(latestInfo.totalNumChunks);
  }
  return retriever_.get();
}

IkRetriever* IkLocalIndexBinder::retriever() { return localRetriever(); }

FiStemTable* IkLocalIndexBinder::stemTable() {
  if (stemTable_ == nullptr) {
    auto table = std::make_unique<FiStemTable>();
    table->bind(name_.suffix(".unstem"), 0, 1);
    stemTable_ = std::move(table);
  }
  return stemTable_.get();
}

bool IkLocalIndexBinder::hasStemTable() { return SysTools::fileExists(name_.suffix(".unstem")); }

IkUnstemmer* IkLocalIndexBinder::unstemmer() {
  if (unstemmer_ == nullptr) unstemmer_ = std::make_unique<IkUnstemmer>(idfCache(), stemTable());
  return unstemmer_.get();
}

bool IkLocalIndexBinder::hasPositions() { return SysTools::fileExists(name_.suffix(".prx.map")); }

IkProxBinder* IkLocalIndexBinder::positions() {
  if (positions_ == nullptr) positions_ = std::make_unique<IkProxBinder>(name_.suffix(".prx"));
  return positions_.get();
}

bool IkLocalIndexBinder::isUnderSafePath(const char* directory) const {
  return safePath_.empty() || isUnder(directory, safePath_);
}

int IkLocalIndexBinder::cleanupFiles() {
  const std::string root = name_.suffix(nullptr);
  const std::size_t slash = root.rfind('/');
  std::string directory = ".";
  if (slash != std::string::npos) directory = slash == 0 ? "/" : root.substr(0, slash);
  const std::string base = slash == std::string::npos ? root : root.substr(slash + 1);
  if (base.empty()) return -1;
  DIR* const dir = opendir(directory.c_str());
  if (dir == nullptr) return -1;
  if (isUnder(directory, safePath_)) {
    while (const dirent* entry = readdir(dir)) {
      if (std::strncmp(entry->d_name, base.c_str(), base.size()) != 0) continue;
      SysTools::removeFile((directory + "/" + entry->d_name).c_str());
    }
  }
  closedir(dir);
  return 0;
}

}  // namespace vandrelle
