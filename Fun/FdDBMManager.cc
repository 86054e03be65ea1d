#include "Fun/FdDBMManager.h"

#include <db_185.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "Fun/FdBDBMTable.h"
#include "Fun/FdException.h"

namespace vandrelle {

namespace {

constexpr int kPermissions = 0644;

const char* const kFailures[] = {"Could not open table ", "Could not create table ",
                                 "Could not bind to table "};

// The library makes a table under the name "__db.NAME" beside its place and renames
// it. What a run that was killed, or met a full disk, left under that name makes
// every later dbopen wait for ever.
void removeUnfinished(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  const std::size_t base = slash == std::string::npos ? 0 : slash + 1;
  ::unlink((name.substr(0, base) + "__db." + name.substr(base)).c_str());
}

// The library seeds random() from the clock and the process number, for marks of its
// files. It does so in a state of its own here: the process's sequence stays as it
// was, and a run that is repeated gives the same index.
class KeptRandomState {
 public:
  KeptRandomState() : kept_(::initstate(1, scratch_, sizeof scratch_)) {}
  ~KeptRandomState() { ::setstate(kept_); }
  KeptRandomState(const KeptRandomState&) = delete;
  KeptRandomState& operator=(const KeptRandomState&) = delete;

 private:
  char scratch_[32];
  char* kept_;
};

// False for a file that is no table of the kind, by the magic number that stands at
// byte 12 in either byte order: the library would say so on the error stream. What
// cannot be read, and an empty file, is left to the library.
bool mayBe(const char* name, DBTYPE type) {
  std::ifstream is(name, std::ios::binary);
  char first[16];
  is.read(first, sizeof first);
  if (is.gcount() == 0) return true;
  if (!is) return false;
  std::uint32_t magic;
  std::memcpy(&magic, first + 12, sizeof magic);
  const std::uint32_t expected = type == DB_HASH ? 0x061561 : 0x053162;
  return magic == expected || magic == __builtin_bswap32(expected);
}

DB* opened(const char* name, int flags, DBTYPE type, const void* info) {
  if (name == nullptr) return nullptr;
  if ((flags & O_TRUNC) == 0 && !mayBe(name, type)) return nullptr;
  if ((flags & O_CREAT) != 0) removeUnfinished(name);
  const KeptRandomState state;
  DB* const database = dbopen(name, flags, kPermissions, type, info);
  if (database == nullptr && (flags & O_CREAT) != 0) removeUnfinished(name);
  return database;
}

FdBag* tableOf(DB* database, const char* name, int mode) {
  if (database == nullptr) THROW(DBM, kFailures[mode] << (name != nullptr ? name : ""));
  return new FdBDBMTable(database, name);
}

}  // namespace

int FdDBMManager::openMode(int mode) {
  switch (mode) {
    case kOpenOrCreate:
      return O_RDWR | O_CREAT;
    case kCreateAnew:
      return O_RDWR | O_CREAT | O_TRUNC;
    case kOpenReadOnly:
      return O_RDONLY;
    default:
      THROW(DBM, "Invalid table mode " << mode);
  }
}

FdBag* FdDBMManager::Btree(const char* name, int mode) {
  const int flags = openMode(mode);
  return tableOf(opened(name, flags, DB_BTREE, nullptr), name, mode);
}

FdBag* FdDBMManager::Btree(const char* name, int mode, int cachsize, int psize, int minkeypage) {
  const int flags = openMode(mode);
  BTREEINFO info{};
  info.cachesize = static_cast<decltype(info.cachesize)>(cachsize);
  info.psize = static_cast<decltype(info.psize)>(psize);
  info.minkeypage = minkeypage;
  return tableOf(opened(name, flags, DB_BTREE, &info), name, mode);
}

FdBag* FdDBMManager::Hash(const char* name, int mode) {
  const int flags = openMode(mode);
  return tableOf(opened(name, flags, DB_HASH, nullptr), name, mode);
}

FdBag* FdDBMManager::Hash(const char* name, int mode, int bucksize, int cachsize, int fillfactor) {
  const int flags = openMode(mode);
  HASHINFO info{};
  info.bsize = static_cast<decltype(info.bsize)>(bucksize);
  info.cachesize = static_cast<decltype(info.cachesize)>(cachsize);
  info.ffactor = static_cast<decltype(info.ffactor)>(fillfactor);
  info.nelem = 1;
  return tableOf(opened(name, flags, DB_HASH, &info), name, mode);
}

FdBag* FdDBMManager::Bind(const char* name) {
  const int flags = openMode(kOpenReadOnly);
  DB* database = opened(name, flags, DB_HASH, nullptr);
  if (database == nullptr) database = opened(name, flags, DB_BTREE, nullptr);
  if (database == nullptr) {
    THROW(DBM, "Failed to initialize DBM table" << (name != nullptr ? name : ""));
  }
  return new FdBDBMTable(database, name);
}

FdBag* FdDBMManager::Ndbm(const char*) {
  THROW(DBMUnimpl, "FdBag* FdDBMManager::Ndbm(char*) is unimplemented in this class");
}

}  // namespace vandrelle
