#include "Token/TkStopTable.h"

#include <cstdio>
#include <fstream>
#include <string>

#include "KeyFile/KdStopAccessor.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Token.h"
#include "Token/CharacterClass.h"
#include "Token/TkSourceReader.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr char kNoReplacement[] = "*";
constexpr int kBuckets = 8192;
constexpr int kChunkSize = 128;

}  // namespace

TkStopTable::TkStopTable(const char* tableName) : table_(kBuckets) {
  if (tableName == nullptr) tableName = kTkDefaultStopTable;
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    if (!readStopFileIntoTable(tableName)) THROW(IO, tableName << " is no stop table");
    return;
  }
  environment.restore_env();
  table_.removeAll();
  dupList_.clear();
  ExceptionManager::instance()->do_throw();
}

// False for a key file of another kind, whose data are no words.
bool TkStopTable::readStopFileIntoTable(const char* tableName) {
  const std::unique_ptr<KdFileAccessor> accessor(KfKeyFileManager::KdBind(tableName));
  if (dynamic_cast<const KdStopAccessor*>(accessor.get()) == nullptr) return false;
  const std::unique_ptr<KdStream> stream(accessor->iterator());
  for (stream->reset(); stream->more(); stream->next()) {
    const WmWord* key = dupList_.emplace_back(WmWord::Create(*stream->key())).get();
    const WmWord* replacement = nullptr;
    if (stream->dataSize() != 0) {
      const auto* data = static_cast<const WmWord*>(stream->data());
      replacement = dupList_.emplace_back(WmWord::Create(*data)).get();
    }
    table_.insert(key, reinterpret_cast<FdFastWordTable::Data>(replacement));
  }
  return true;
}

int TkStopTable::stop(const WmWord* word, WmWord* data) {
  FdFastWordTable::Data found;
  if (!table_.find(word, &found)) return 0;
  if (data == nullptr) return 1;
  if (found != 0) {
    new (data) WmWord(*reinterpret_cast<const WmWord*>(found));
  } else {
    data->makeInvalid();
  }
  return 1;
}

namespace {

// Leaves the files of `tableName` unfinished if it throws.
void compile(std::istream& is, const char* tableName) {
  std::unique_ptr<KdFileCreator> creator(
      KfKeyFileManager::KdCreate(tableName, kChunkSize, kKdStop, 0));
  TkSourceReader reader(&is);
  while (reader.next()) {
    const WmLocalWord key(reader.token().c_str());
    if (!reader.next()) break;
    const WmLocalWord replacement(reader.token().c_str());
    const bool none = reader.token() == kNoReplacement;
    creator->Add_Entry(key.word(), none ? nullptr : replacement.word(), 0);
  }
}

}  // namespace

void TkStopTable::createTable(const char* flatFileName, const char* tableName) {
  if (tableName == nullptr) THROW(IO, "Need non-null name for key/pointer files.");
  std::ifstream is(flatFileName);
  const int first = is.peek();
  if (!is.is_open() || is.bad()) {
    is.close();
    THROW(IO, "Error opening stop table source file: " << flatFileName);
  }
  if (first == EOF || !character_class::isLetter(static_cast<char>(first))) {
    is.close();
    THROW(IO, "Bad file type - must pass in a flat file: " << flatFileName);
  }
  // The former table stays until the new one is whole.
  const std::string table(tableName), unfinished = table + ".new";
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    compile(is, unfinished.c_str());
    if (is.bad()) THROW(IO, "Error opening stop table source file: " << flatFileName);
    for (const char* suffix : {".key", ".ptr"}) {
      if (std::rename((unfinished + suffix).c_str(), (table + suffix).c_str()) != 0) {
        THROW(IO, "Couldn't write " << table + suffix);
      }
    }
    return;
  }
  environment.restore_env();
  is.close();
  for (const char* suffix : {".key", ".ptr"}) SysTools::removeFile((unfinished + suffix).c_str());
  ExceptionManager::instance()->do_throw();
}

bool TkStopTable::checkSource(std::istream& is, TkSourceFault* fault) {
  TkSourceReader reader(&is);
  const int first = is.peek();
  if (is.bad()) {
    *fault = reader.unreadable();
    return false;
  }
  if (first == EOF || !character_class::isLetter(static_cast<char>(first))) {
    *fault = {1, "", "the file does not begin with a letter"};
    return false;
  }
  const auto broken = [fault](const TkSourceFault& found) {
    *fault = found;
    return false;
  };
  WmLocalWord previous;
  while (reader.next()) {
    const int keyLetters = static_cast<int>(reader.token().size());
    if (keyLetters > kKdStopMaxKey) {
      return broken(
          reader.fault("a word has at most " + std::to_string(kKdStopMaxKey) + " letters"));
    }
    const WmLocalWord key(reader.token().c_str());
    if (KdStopLetter(key.word()) < 0) {
      return broken(reader.fault("a word begins with a letter"));
    }
    const int order = WmWord::cmp(previous.word(), key.word());
    if (order == 0) return broken(reader.fault("the word stands there twice"));
    if (order > 0) return broken(reader.fault("the word is out of order"));
    const TkSourceFault alone = reader.fault("the word has no replacement and no * behind it");
    if (!reader.next()) return broken(alone);
    if (reader.token().size() > kKdStopMaxData) {
      return broken(
          reader.fault("a replacement has at most " + std::to_string(kKdStopMaxData) + " letters"));
    }
    previous = key;
  }
  return !is.bad() || broken(reader.unreadable());
}

}  // namespace vandrelle
