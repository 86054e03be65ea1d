#include "KeyFile/KdStopAccessor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "KeyFile/KdFileALAccessor.h"

namespace vandrelle {

namespace {

std::unique_ptr<unsigned char[]> chunkBuffer(const KdStopTable& table) {
  return std::make_unique<unsigned char[]>(static_cast<std::size_t>(table.maxChunkBytes()));
}

bool hasDigit(const WmWord* word) {
  return std::any_of(word->letters(), word->letters() + word->num_letters(),
                     [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

KdStopAccessor::KdStopAccessor(std::ifstream* ptr_file, int keyfile_fd) : keyfile_fd_(keyfile_fd) {
  const char* fault;
  {
    // Nothing here may be left by a throw.
    const std::vector<unsigned char> content = KdReadWholeFile(ptr_file);
    fault = bindTable(content.data(), content.size());
  }
  if (fault != nullptr) THROW(KdAccess, "Pointer file is damaged: " << fault);
}

const char* KdStopAccessor::bindTable(const unsigned char* ptr_file, std::size_t bytes) {
  struct stat status;
  if (fstat(keyfile_fd_, &status) != 0) return "its key file cannot be looked at";
  const char* fault = table_.read(ptr_file, bytes, status.st_size);
  if (fault == nullptr) chunk_buf_ = chunkBuffer(table_);
  return fault;
}

KdStopAccessor::~KdStopAccessor() {
  if (close(keyfile_fd_) != 0) THROW(KdAccess, "Can't close keyfile");
}

int KdStopAccessor::Lookup(const WmWord* search_word, int32* data_size, void* data) {
  if (search_word == nullptr) THROW(KdAccess, "Must search for non-null word");
  if (search_word->num_letters() > kKdStopMaxKey + 1 || hasDigit(search_word)) return 0;
  const int chunk_num = table_.findChunk(search_word);
  if (chunk_num < 0) return 0;
  Read_Chunk_Into_Buf(chunk_num);
  KdStopEntry entry;
  if (!Find_Word_In_Chunk(search_word, &entry)) return 0;
  const int letters = entry.data_common + entry.data_rest;
  if (data_size != nullptr) *data_size = letters > 0 ? WmWord::BytesRequired(letters) : 0;
  if (data != nullptr) entry.buildData(search_word, static_cast<WmWord*>(data));
  return 1;
}

int KdStopAccessor::Lookup(int32, WmWord*) {
  THROW(KdAccess, "KdStopAccessor::Lookup(int32, WmWord*) is unimplemented");
}

int KdStopAccessor::Lookup(const WmWord*, int32*) {
  THROW(KdAccess, "KdStopAccessor::Lookup(WmWord*, int32*) is unimplemented");
}

int32 KdStopAccessor::Num_Entries() {
  THROW(KdAccess, "KdStopAccessor::Num_Entries() is unimplemented");
}

KdStream* KdStopAccessor::iterator() { return new KdStopStream(keyfile_fd_, &table_); }

void KdStopAccessor::Read_Chunk_Into_Buf(int chunk_num) {
  if (chunk_num == current_chunk_) return;
  current_chunk_ = 65535;
  chunk_bytes_ = table_.load(keyfile_fd_, chunk_num, chunk_buf_.get());
  if (chunk_bytes_ < 0) THROW(KdAccess, "Key file is damaged: a chunk");
  current_chunk_ = chunk_num;
}

// Keys are sorted and front-coded: `matches` letters are confirmed, and a key that
// shares more than those with the one before is smaller, as that one was.
bool KdStopAccessor::Find_Word_In_Chunk(const WmWord* key, KdStopEntry* entry) const {
  const int length = key->num_letters();
  int matches = 0;
  for (int at = 0; !KdStopChunkEnds(chunk_buf_.get(), chunk_bytes_, at); at = entry->next) {
    if (!KdReadStopEntry(chunk_buf_.get(), chunk_bytes_, at, entry)) {
      THROW(KdAccess, "Key file is damaged: an entry");
    }
    if (entry->key_common < matches) return false;
    if (entry->key_common > matches) continue;
    int compared = 0;
    while (compared < entry->key_rest && matches < length) {
      const unsigned char stored = entry->key_letters[compared];
      const auto wanted = static_cast<unsigned char>(key->letter(matches));
      if (stored > wanted) return false;
      if (stored < wanted) break;
      ++compared;
      ++matches;
    }
    if (matches == length) return compared == entry->key_rest;
  }
  return false;
}

KdStopStream::KdStopStream(FILE_DES key_file, const KdStopTable* table)
    : key_file_(key_file), table_(table), chunk_buf_(chunkBuffer(*table)) {}

void KdStopStream::reset() {
  chunk_num_ = 0;
  chunk_bytes_ = this_chunk_size_ = 0;
  this_key_->makeInvalid();
  next();
}

void KdStopStream::reset(const WmWord* startWord) {
  reset();
  while (more_ && WmWord::cmp(startWord, key()) > 0) next();
}

int KdStopStream::next() {
  more_ = false;
  if (KdStopChunkEnds(chunk_buf_.get(), this_chunk_size_, chunk_bytes_)) {
    if (chunk_num_ >= table_->count()) return 0;
    chunk_bytes_ = this_chunk_size_ = 0;
    const int bytes = table_->load(key_file_, chunk_num_, chunk_buf_.get());
    if (bytes < 0) THROW(KdStream, "Key file is damaged: a chunk");
    this_chunk_size_ = bytes;
    ++chunk_num_;
  }
  KdStopEntry entry;
  if (!KdReadStopEntry(chunk_buf_.get(), this_chunk_size_, chunk_bytes_, &entry) ||
      entry.key_common > this_key_->num_letters()) {
    THROW(KdStream, "Key file is damaged: an entry");
  }
  chunk_bytes_ = entry.next;
  this_key_->num_letters(entry.key_common + entry.key_rest);
  for (int i = 0; i < entry.key_rest; ++i) {
    this_key_->letter(entry.key_common + i, static_cast<char>(entry.key_letters[i]));
  }
  entry.buildData(key(), this_data_.word());
  more_ = true;
  return entry.key_common == 0 ? -1 : entry.key_common;
}

}  // namespace vandrelle
