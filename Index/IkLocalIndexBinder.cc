#include "Index/IkLocalIndexBinder.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cstring>

#include "Index/IkDataFileBinder.h"
#include "Index/IkException.h"
#include "Index/IkIdfBinder.h"
#include "Index/IkIdfCache.h"
#include "Index/IkLocalWordTable.h"
#include "KeyFile/KfKeyFileManager.h"

namespace vandrelle {

namespace {

constexpr int kMaxSuffix = 20;
constexpr int kReadKeyFile = 14;
constexpr int kMapKeyFile = 16;

// Maps a file that must have at least `bytes` bytes; nothing if those are 0.
void mapArray(SysToolsMapObject* map, const char* filename, std::int64_t bytes) {
  if (bytes <= 0) return;
  map->bind(filename, 0, 0);
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
    : name_(rootname, kMaxSuffix), docmgr_(doc) {}

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
        KfKeyFileManager::KdBind(name_.suffix(nullptr), mapped ? kMapKeyFile : kReadKeyFile));
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
      const auto* bytes = static_cast<const unsigned char*>(map.addr());
      for (std::size_t i = 0; i < sums->size(); ++i) (*sums)[i] = loadFloat(bytes + 4 * i);
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

QaBinder* IkLocalIndexBinder::queryAccelBinder(int) { return nullptr; }

IkTranspose* IkLocalIndexBinder::transpose() {
  THROW(Unimpl, "IkLocalIndexBinder::transpose() is unimplemented");
}

IkLocalRetriever* IkLocalIndexBinder::localRetriever() {
  THROW(Unimpl, "IkLocalIndexBinder::localRetriever() is unimplemented");
}

IkRetriever* IkLocalIndexBinder::retriever() {
  THROW(Unimpl, "IkLocalIndexBinder::retriever() is unimplemented");
}

FiStemTable* IkLocalIndexBinder::stemTable() {
  THROW(Unimpl, "IkLocalIndexBinder::stemTable() is unimplemented");
}

IkUnstemmer* IkLocalIndexBinder::unstemmer() {
  THROW(Unimpl, "IkLocalIndexBinder::unstemmer() is unimplemented");
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
