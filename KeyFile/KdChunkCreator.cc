#include "KeyFile/KdChunkCreator.h"

#include <cstring>

#include "KeyFile/KdPointerTable.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

// Writes the fields of a header from the one at `offset` on.
void Write_Fields(std::ostream& ptr_file, const KdHeader& header, int32 offset) {
  unsigned char bytes[KdHeader::kBytes];
  header.store(bytes);
  ptr_file.seekp(offset);
  ptr_file.write(reinterpret_cast<const char*>(bytes) + offset, KdHeader::kBytes - offset);
  if (!ptr_file) THROW(IO, "Error writing to pointer file.");
}

}  // namespace

KdChunkCreator::KdChunkCreator(int32 chunk_size, int32 data_size, int const_data, int aligned)
    : chunk_size_(chunk_size),
      data_size_(data_size),
      const_data_(const_data),
      aligned_(aligned),
      prev_word_(new (prev_word_buffer_) WmWord("")) {
  if (data_size >= chunk_size) THROW(KdInit, "Chunk size must be greater than data size.");
  if (chunk_size < 0) THROW(KdInit, "Chunk size must be a positive integer.");
  if (const_data && data_size < 0) THROW(KdInit, "Data size must not be negative.");
  chunk_buf_ = std::make_unique<unsigned char[]>(static_cast<std::size_t>(chunk_size));
}

void KdChunkCreator::Open_Key_File(const char* path) {
  if (!Open_New_File(key_file_, path)) THROW(IO, "Can't open key file for writing: " << path);
}

// A former file goes first: whoever has it mapped keeps it whole, and the system
// doesn't wait for the device when the new one is closed.
bool KdChunkCreator::Open_New_File(std::fstream& file, const char* path) {
  SysTools::removeFile(path);
  file.open(path, std::ios::in | std::ios::out | std::ios::trunc | std::ios::binary);
  return file.good();
}

void KdChunkCreator::Write_Header(std::ostream& ptr_file, int32 type) {
  Write_Fields(ptr_file, {type, chunk_size_, data_size_}, 0);
}

void KdChunkCreator::Write_Counters(std::ostream& ptr_file) {
  Write_Fields(ptr_file, {0, 0, 0, keyfile_pos_, num_chunks_}, KdHeader::kCounters);
}

void KdChunkCreator::Add_Entry(const char* aWord, const void* data, int32 data_size) {
  WmLocalWord word(aWord);
  Add_Entry(word.word(), data, data_size);
}

void KdChunkCreator::Add_Entry(const WmWord* aWord, const void* data, int32 data_size) {
  if (data_size >= chunk_size_) THROW(KdInit, "Chunk size must be greater than data size.");
  if (aWord->num_letters() > kKdMaxLetters) THROW(KdWordTooBig, "Word too long.");
  if (data_size > kKdMaxDataBytes) THROW(KdWordTooBig, "Data too big.");
  if (!const_data_) {
    if (data_size < 0) THROW(KdInit, "Data size must not be negative.");
    data_size_ = data_size;
  }
  if (WmWord::cmp(aWord, prev_word_) <= 0) return;
  ++word_num_;
  in_ptr_file_ = 0;
  if (Is_New_Letter(aWord) || Overflow(aWord)) {
    Write_To_Pointer_File(aWord);
    Write_Chunk_To_Disk();
    in_ptr_file_ = 1;
  }
  Add_Entry_To_Buffer(aWord, data);
  new (prev_word_buffer_) WmWord(*aWord);
}

bool KdChunkCreator::Is_New_Letter(const WmWord* aWord) const {
  return prev_word_->num_letters() == 0 || prev_word_->letter(0) != aWord->letter(0);
}

int KdChunkCreator::Common_With_Previous(const WmWord* aWord) const {
  return in_ptr_file_ ? 0 : KdCommonLetters(prev_word_, aWord);
}

void KdChunkCreator::Require_Fit(int32 entry_bytes) const {
  if (entry_bytes > chunk_size_) {
    THROW(KdInit,
          "The size of the data plus word must be                        less than the chunk size");
  }
}

bool KdChunkCreator::Overflow(const WmWord* aWord) {
  const int letters = aWord->num_letters();
  const int non_common = letters - KdCommonLetters(prev_word_, aWord);
  const int32 pair_size = KdMapBytes(letters) + data_size_ + (const_data_ ? 0 : 1) +
                          KdLetterBytes(aligned_ != 0, non_common);
  Require_Fit(pair_size);
  return pair_size + chunk_bytes_ > chunk_size_;
}

void KdChunkCreator::Add_Entry_To_Buffer(const WmWord* aWord, const void* data) {
  const int letters = aWord->num_letters();
  const int common = Common_With_Previous(aWord);
  entry_size_ = KdMapBytes(letters) + data_size_ + (const_data_ ? 0 : 1) +
                KdLetterBytes(aligned_ != 0, letters - common);
  Require_Fit(entry_size_ + chunk_bytes_);
  unsigned char* to = chunk_buf_.get() + chunk_bytes_;
  to += KdPutMap(to, common, letters);
  if (!const_data_) *to++ = static_cast<unsigned char>(data_size_);
  if (data != nullptr) {
    std::memcpy(to, data, static_cast<std::size_t>(data_size_));
  } else {
    std::memset(to, 0, static_cast<std::size_t>(data_size_));
  }
  to += data_size_;
  KdPutLetters(to, aligned_ != 0, aWord, common);
  chunk_bytes_ += entry_size_;
}

void KdChunkCreator::Pass_Chunk() {
  if (keyfile_pos_ > INT32_MAX - chunk_bytes_) THROW(IO, "Key file would pass 2 gigabytes.");
  keyfile_pos_ += chunk_bytes_;
}

void KdChunkCreator::Write_Chunk_To_Disk() {
  if (chunk_bytes_ == 0) return;
  key_file_.write(reinterpret_cast<const char*>(chunk_buf_.get()), chunk_bytes_);
  if (!key_file_) THROW(IO, "Can't write to key file.");
  chunk_bytes_ = 0;
}

void KdChunkCreator::Separate_Last_Entry() {
  if (in_ptr_file_) return;
  chunk_bytes_ -= entry_size_;
  const int32 prev_chunk_size = chunk_bytes_;
  Write_To_Pointer_File(prev_word_);
  Write_Chunk_To_Disk();
  Create_Last_Chunk(prev_chunk_size);
}

// The size of varying data is taken from the entry: data_size_ may be that of a
// word that was dropped since.
void KdChunkCreator::Create_Last_Chunk(int32 prev_chunk_size) {
  const int letters = prev_word_->num_letters();
  const unsigned char* entry = chunk_buf_.get() + prev_chunk_size;
  int32 before_letters = KdMapBytes(letters);
  before_letters += const_data_ ? data_size_ : 1 + entry[before_letters];
  Require_Fit(before_letters + KdLetterBytes(aligned_ != 0, letters));
  unsigned char* to = chunk_buf_.get();
  std::memmove(to, entry, static_cast<std::size_t>(before_letters));
  KdPutMap(to, 0, letters);
  chunk_bytes_ = before_letters + KdPutLetters(to + before_letters, aligned_ != 0, prev_word_, 0);
  in_ptr_file_ = 1;
}

void KdChunkCreator::Close_Key_File() {
  Pass_Chunk();
  Write_Chunk_To_Disk();
  key_file_.close();
  if (!key_file_) THROW(IO, "Error writing key file.");
}

}  // namespace vandrelle
