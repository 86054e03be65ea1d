#include "KeyFile/KdStreamImpl.h"

#include <unistd.h>

#include <algorithm>

namespace vandrelle {

KdStreamImpl::KdStreamImpl(const KdChunkAccessor* accessor)
    : layout_(accessor->layout()),
      key_file_(accessor->keyfile_fd()),
      table_(accessor->table()),
      this_key_(new (key_buffer_) WmWord("")) {
  data_size_ = std::max(layout_.data_size, 0);
  if (layout_.place == KdDataPlace::kConstant && data_size_ > kMaxDataBytes) {
    THROW(KdStream, "Data too big to be streamed: " << data_size_ << " bytes.");
  }
}

void KdStreamImpl::reset() {
  chunk_bytes_ = 0;
  chunk_num_ = 0;
  next();
}

void KdStreamImpl::reset(const WmWord* startWord) {
  chunk_bytes_ = this_chunk_size_;
  const int32 last = table_.count() - 1;
  if (last < 0 || startWord->num_letters() == 0 || WmWord::cmp(startWord, table_.word(last)) > 0) {
    next();
    return;
  }
  // The last chunk that begins at or before the word, but not before its letter.
  int32 start = 0;
  int32 finish = last + 1;
  while (finish - start > 1) {
    const int32 half = start + (finish - start) / 2;
    (WmWord::cmp(startWord, table_.word(half)) >= 0 ? start : finish) = half;
  }
  const auto letter = [](const WmWord* word) {
    return static_cast<unsigned char>(word->letter(0));
  };
  chunk_num_ = start;
  if (start < last && letter(table_.word(start)) < letter(startWord)) ++chunk_num_;
  while (next() != 0 && WmWord::cmp(startWord, this_key_) > 0) {
  }
}

void KdStreamImpl::Get_New_Chunk() {
  const int32 begin = table_.offset(chunk_num_);
  const int32 bytes = table_.chunk_bytes(chunk_num_);
  if (begin < run_begin_ || begin + bytes > run_begin_ + run_bytes_) {
    const int32 capacity = std::max(kRunBytes, table_.max_chunk_bytes());
    if (run_ == nullptr) run_.reset(new unsigned char[static_cast<std::size_t>(capacity)]);
    run_bytes_ = 0;
    const int32 wanted = std::min(capacity, table_.total_bytes() - begin);
    if (pread(key_file_, run_.get(), static_cast<std::size_t>(wanted), begin) != wanted) {
      THROW(KdStream, "Can't read buffer off disk");
    }
    run_begin_ = begin;
    run_bytes_ = wanted;
  }
  chunk_ = run_.get() + (begin - run_begin_);
  this_chunk_size_ = bytes;
  chunk_bytes_ = 0;
  if (!KdChunkBeginsWith(layout_, chunk_, bytes, table_.word(chunk_num_))) {
    THROW(KdStream, "Key file is damaged: a chunk doesn't begin with its word");
  }
  ++chunk_num_;
}

bool KdStreamImpl::Prepare_Next() {
  if (chunk_num_ >= table_.count()) {
    ++chunk_num_;
    return false;
  }
  if (chunk_bytes_ == this_chunk_size_) Get_New_Chunk();
  return true;
}

void KdStreamImpl::Read_Entry(KdChunkEntry* entry) {
  if (!KdReadEntry(layout_, chunk_, this_chunk_size_, chunk_bytes_, entry) ||
      entry->common > this_key_->num_letters()) {
    THROW(KdStream, "Key file is damaged: an entry");
  }
  chunk_bytes_ = entry->next;
}

void KdStreamImpl::Take_Letters(const KdChunkEntry& entry) {
  this_key_->num_letters(entry.common + entry.non_common);
  for (int i = 0; i < entry.non_common; ++i) {
    this_key_->letter(entry.common + i, static_cast<char>(KdEntryLetter(layout_, entry, i)));
  }
}

void KdStreamImpl::Take_Data(const unsigned char* from, int32 bytes) {
  std::memcpy(this_data_, from, static_cast<std::size_t>(bytes));
}

// The last chunk has one entry: once it has been loaded and its entry decoded,
// the number of the next chunk tells the end.
int KdStreamImpl::next() {
  if (!Prepare_Next()) return 0;
  KdChunkEntry entry;
  Read_Entry(&entry);
  data_size_ = entry.data_size;
  Take_Data(entry.data, entry.data_size);
  Take_Letters(entry);
  return entry.common == 0 ? -1 : entry.common;
}

int KdStreamInline::next() {
  constexpr int32 kStreamedDataBytes = 8;
  if (!Prepare_Next()) return 0;
  KdChunkEntry entry;
  Read_Entry(&entry);
  Take_Letters(entry);
  data_size_ = entry.data_size != 0 ? kStreamedDataBytes : 0;
  const auto behind_letters = static_cast<int32>(entry.data - chunk_);
  Take_Data(entry.data, std::min(data_size_, this_chunk_size_ - behind_letters));
  chunk_bytes_ = std::min(behind_letters + data_size_, this_chunk_size_);
  return entry.common == 0 ? -1 : entry.common;
}

}  // namespace vandrelle
