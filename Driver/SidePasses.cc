#include "Driver/SidePasses.h"

#include <dirent.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "Document/DcFieldBag.h"
#include "Document/DcFieldsBinder.h"
#include "Driver/OpenFile.h"
#include "Fast/FiStemTable.h"
#include "Index/IkDataFileBinder.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkWordTable.h"
#include "Storage/StFileStorage.h"
#include "Token/TkStemmer.h"
#include "Tool/ByteOrder.h"
#include "Tool/HeapText.h"
#include "Tool/SysTools.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

// Rarer words than this stay out of the unstemming table.
constexpr float kMaxIdf = 9.0f;
constexpr int kDocumentsPerBucket = 380;
constexpr int kLeastBuckets = 64;

// The files whose names begin with `prefix`. The directory is read instead of
// handing the pattern to a shell: a root with blanks or quotes in it is a name like
// any other.
std::vector<std::string> filesWithPrefix(const std::string& prefix) {
  const std::size_t slash = prefix.rfind('/');
  const std::string directory = slash == std::string::npos ? "./" : prefix.substr(0, slash + 1);
  const std::string base = slash == std::string::npos ? prefix : prefix.substr(slash + 1);
  std::vector<std::string> names;
  DIR* dir = ::opendir(directory.c_str());
  if (dir == nullptr) {
    LOG(0, 0, "removing tempfiles failed");
    return names;
  }
  while (const dirent* entry = ::readdir(dir)) {
    if (std::strncmp(entry->d_name, base.c_str(), base.size()) == 0) {
      names.push_back(directory + entry->d_name);
    }
  }
  ::closedir(dir);
  return names;
}

}  // namespace

void removeTempFiles(NameManager* rootName) {
  const std::string prefix = rootName->suffix(".tmp");
  LOG(2, 1, "Removing tempfiles: rm -f " << prefix << "*\n");
  for (const std::string& name : filesWithPrefix(prefix)) SysTools::removeFile(name.c_str());
}

void removeTempPositions(NameManager* rootName) {
  const std::string prefix = rootName->suffix(".prx");
  const std::size_t length = prefix.size() - (prefix.rfind('/') + 1);
  for (const std::string& name : filesWithPrefix(prefix)) {
    const std::string number = name.substr(name.rfind('/') + 1 + length);
    const bool isRun = !number.empty() && number.find_first_not_of("0123456789") == number.npos;
    if (isRun) SysTools::removeFile(name.c_str());
  }
}

void removeFieldFiles(NameManager* rootname) {
  SysTools::removeFile(rootname->suffix(".fld.nam"));
  StFileStorage::Remove(rootname->suffix(".fld.val"));  // perhaps of several files
  for (const char* suffix : {".fld.ptr", ".fld.lst"}) {
    SysTools::removeFile(rootname->suffix(suffix));
  }
}

int CREATE_FAST_FILES(NameManager* root) {
  const std::string rootname = root->suffix(nullptr);
  {
    DcFieldsBinder binder(rootname.c_str());
    if (!binder.valid()) return 0;
  }
  DcFieldBag fields(0, 0);
  fields.Add("url", 0);
  fields.Add("title", 0);
  fields.Add("summary", 0);
  if (!DcFieldsBinder::createFastFiles(&fields, nullptr, nullptr, rootname.c_str(), nullptr)) {
    return 0;
  }
  for (const char* suffix : {".fld.nam", ".fld.lst"}) SysTools::removeFile(root->suffix(suffix));
  StFileStorage::Remove(root->suffix(".fld.val"));
  SysTools::removeFile(root->suffix(".fld.ptr"));
  return 1;
}

int CREATE_UNSTEM_INDEX(NameManager* rootname, TkStemmer* stemmer, int ndocs) {
  IkLocalIndexBinder index(rootname->suffix(nullptr), nullptr);
  IkWordTable* words = index.wordTable();
  IkDataFileBinder* rows = index.indexData(0, 0);
  SysTools::removeFile(rootname->suffix(".unstem"));
  FiStemTable table;
  table.buckets(ndocs / kDocumentsPerBucket + kLeastBuckets);
  table.bind(rootname->suffix(".unstem"), 1, 0);
  for (int number = 0; const WmWord* word = words->word(number); ++number) {
    StStoragePos position;
    float idf = 0;
    if (words->lookup(word, position)) {
      rows->seek(position);
      idf = rows->scale();
    }
    if (idf > kMaxIdf) continue;
    WmLocalWord surface(*word);
    WmLocalWord stem;
    stemmer->stem(surface.word(), stem.word());
    if (stem->valid()) table.insert(*stem.word(), *surface.word(), -1);
  }
  table.flush();
  return 1;
}

int CREATE_SUMMARY_FILE(const char* root, int, int) {
  const NameManager name(root, 20);
  DcFieldsBinder binder(root);
  if (!binder.valid()) return -1;
  const int documents = binder.numDocuments();
  std::ofstream map;
  std::ofstream summaries;
  if (!openOutputFile(name.suffix(".sum.map"), map) ||
      !openOutputFile(name.suffix(".sum.idx"), summaries)) {
    return -1;
  }
  summaries.put('*');
  uint32 position = 1;
  for (int doc = 0; doc < documents; ++doc) {
    const HeapAptr<char> summary(binder.retrieve(doc, "summary"));
    const char* text = summary ? summary.get() : "";
    char offset[4];
    storeU32(offset, position);
    map.write(offset, sizeof offset);
    const std::size_t bytes = std::strlen(text) + 1;
    summaries.write(text, static_cast<std::streamsize>(bytes));
    position += static_cast<uint32>(bytes);
  }
  map.close();
  summaries.close();
  return map.fail() || summaries.fail() ? -1 : 0;
}

void renameFile(NameManager* rootName, const char* ext) {
  const std::string to = rootName->suffix(ext);
  const std::string from = std::string(rootName->suffix(".new")) + ext;
  if (std::rename(from.c_str(), to.c_str()) != 0) {
    LOG(0, 0, "failed to rename " << from << " to " << to);
  }
}

void removeFile(const char* name) {
  if (!SysTools::removeFile(name)) LOG(0, 0, "couldn't remove " << name);
}

}  // namespace vandrelle
