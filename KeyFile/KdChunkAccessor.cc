#include "KeyFile/KdChunkAccessor.h"

#include <sys/stat.h>
#include <unistd.h>

namespace vandrelle {

void KdChunkAccessor::bindTable(const KdHeader& header, const unsigned char* records,
                                const unsigned char* words, int64_t word_bytes) {
  struct stat status;
  if (fstat(keyfile_fd_, &status) != 0) fail("Can't read buffer off disk");
  layout_.data_size = header.data_size;
  if (layout_.place == KdDataPlace::kConstant &&
      (header.data_size < 0 || header.data_size > header.chunk_size)) {
    fail("Pointer file is damaged: ", "the data size");
  }
  const char* fault = table_.set(header, records, words, word_bytes, status.st_size);
  if (fault != nullptr) fail("Pointer file is damaged: ", fault);
}

void KdChunkAccessor::Close_Keyfile() {
  if (close(keyfile_fd_) != 0) fail("Can't close keyfile");
}

void KdChunkAccessor::Read_Chunk_Into_Buf(int32 chunk_num) {
  if (chunk_num == current_chunk_) return;
  current_chunk_ = -1;
  chunk_bytes_ = table_.chunk_bytes(chunk_num);
  if (mapped_ != nullptr) {
    chunk_ = mapped_ + table_.offset(chunk_num);
  } else {
    if (chunk_buf_ == nullptr) {
      chunk_buf_.reset(new unsigned char[static_cast<std::size_t>(table_.max_chunk_bytes())]);
    }
    const ssize_t count = pread(keyfile_fd_, chunk_buf_.get(),
                                static_cast<std::size_t>(chunk_bytes_), table_.offset(chunk_num));
    if (count != chunk_bytes_) fail("Can't read buffer off disk");
    chunk_ = chunk_buf_.get();
  }
  if (!KdChunkBeginsWith(layout_, chunk_, chunk_bytes_, table_.word(chunk_num))) {
    fail("Key file is damaged: ", "a chunk doesn't begin with its word");
  }
  current_chunk_ = chunk_num;
}

bool KdChunkAccessor::Find_Word_In_Chunk(const WmWord* search_word, int32* chunk_wd_num,
                                         KdChunkEntry* entry) {
  const KdWalk result =
      KdFindWordInChunk(layout_, chunk_, chunk_bytes_, search_word, entry, chunk_wd_num);
  if (result == KdWalk::kDamaged) fail("Key file is damaged: ", "an entry");
  return result == KdWalk::kFound;
}

void KdChunkAccessor::Find_By_Num(int32 word_num, WmWord* found_word) {
  const KdWalk result = KdFindOrdinalInChunk(layout_, chunk_, chunk_bytes_, word_num, found_word);
  if (result != KdWalk::kFound) fail("Key file is damaged: ", "a chunk has too few entries");
}

void KdChunkAccessor::Get_Data(const KdChunkEntry& entry, int32* data_size, void* data) const {
  if (data_size != nullptr) *data_size = entry.data_size;
  if (data != nullptr && entry.data_size > 0) {
    std::memcpy(data, entry.data, static_cast<std::size_t>(entry.data_size));
  }
}

int KdChunkAccessor::Lookup(const WmWord* search_word, int32* data_size, void* data) {
  if (search_word == nullptr) fail("Must search for non-null word.");
  bool in_ptr_file;
  const int32 chunk_num = table_.Find_Chunk(search_word, &in_ptr_file);
  if (chunk_num < 0) return 0;
  Read_Chunk_Into_Buf(chunk_num);
  KdChunkEntry entry;
  if (in_ptr_file) {
    // Without a place for the data the size stays unset on this road, and only on it.
    if (data == nullptr) return 1;
    KdReadEntry(layout_, chunk_, chunk_bytes_, 0, &entry);
  } else {
    int32 chunk_wd_num;
    if (!Find_Word_In_Chunk(search_word, &chunk_wd_num, &entry)) return 0;
  }
  Get_Data(entry, data_size, data);
  return 1;
}

int KdChunkAccessor::Lookup(const WmWord* search_word, int32* word_num) {
  if (search_word == nullptr) fail("Must search for non-null word");
  bool in_ptr_file;
  const int32 chunk_num = table_.Find_Chunk(search_word, &in_ptr_file);
  if (chunk_num < 0) return 0;
  int32 chunk_wd_num = 0;
  if (!in_ptr_file) {
    Read_Chunk_Into_Buf(chunk_num);
    KdChunkEntry entry;
    if (!Find_Word_In_Chunk(search_word, &chunk_wd_num, &entry)) return 0;
  }
  if (word_num != nullptr) *word_num = table_.number(chunk_num) + chunk_wd_num;
  return 1;
}

int KdChunkAccessor::Lookup(int32 word_num, WmWord* found_word) {
  const int32 chunk_num = table_.Find_Chunk_NL(word_num);
  if (chunk_num < 0) return 0;
  if (found_word == nullptr) return 1;
  const int32 in_chunk = word_num - table_.number(chunk_num);
  if (in_chunk == 0) {
    new (found_word) WmWord(*table_.word(chunk_num));
    return 1;
  }
  Read_Chunk_Into_Buf(chunk_num);
  Find_By_Num(in_chunk, found_word);
  return 1;
}

}  // namespace vandrelle
