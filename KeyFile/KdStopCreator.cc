#include "KeyFile/KdStopCreator.h"

#include <climits>
#include <iostream>

#include "KeyFile/KdChunk.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr int kMapBytes = 2;
constexpr int kSmallestEntry = kMapBytes + 1;

// A reader that has the former file open keeps it whole.
void openNew(std::fstream& file, const char* what, const char* path) {
  SysTools::removeFile(path);
  file.open(path, std::ios::in | std::ios::out | std::ios::trunc | std::ios::binary);
  if (!file) THROW(IO, "Can't open " << what << " file for writing: " << path);
}

// Data that are a whole prefix of their key still store their last letter.
int commonWithKey(const WmWord* key, const WmWord* data) {
  const int common = KdCommonLetters(key, data);
  return common == data->num_letters() ? common - 1 : common;
}

int storedDataLetters(const WmWord* key, const WmWord* data) {
  return data->valid() ? data->num_letters() - commonWithKey(key, data) : 0;
}

}  // namespace

int KdStopLetter(const WmWord* word) {
  if (!word->valid()) return -1;
  const char letter = WmWord::AsciiToWm(word->letter(0));
  return letter >= 'a' && letter <= 'z' ? letter - 'a' : -1;
}

KdStopCreator::KdStopCreator(const char* file_name, int max_chunk_size, int, int type)
    : max_chunk_size_(static_cast<std::int16_t>(max_chunk_size)) {
  if (max_chunk_size < kSmallestEntry) THROW(KdInit, "Chunk size must be bigger.");
  if (max_chunk_size > SHRT_MAX) THROW(KdInit, "Chunk size must be at most " << SHRT_MAX << ".");
  if (file_name == nullptr) THROW(IO, "Need non-null name for key/pointer files.");
  NameManager names(file_name);
  openNew(key_file_, "key", names.suffix(".key"));
  openNew(ptr_file_, "pointer", names.suffix(".ptr"));
  // An entry that begins a chunk may be longer than the chunk size for a moment.
  chunk_buf_ = std::make_unique<unsigned char[]>(
      static_cast<std::size_t>(max_chunk_size + kMapBytes + kKdStopMaxKey + kKdStopMaxData + 1));
  char header[kKdStopHeaderBytes] = {};
  storeS32(header, type);
  storeS16(header + 4, lz_data_);
  storeS16(header + 6, max_chunk_size_);
  ptr_file_.write(header, sizeof header);
  if (!ptr_file_) THROW(IO, "Error writing to pointer file.");
}

KdStopCreator::~KdStopCreator() {
  Separate_Last_Entry();
  keyfile_pos_ += (chunk_bytes_ + 1) / 2;
  if (keyfile_pos_ > USHRT_MAX) THROW(IO, "Key file would pass " << 2 * USHRT_MAX << " bytes.");
  Write_Chunk_To_Disk();
  key_file_.close();
  if (!key_file_) THROW(IO, "Error writing key file.");
  Finish_Pointer_File();
}

void KdStopCreator::Finish_Pointer_File() {
  char table[kKdStopTableBytes];
  for (std::size_t i = 0; i < lc_table_.size(); ++i) storeU16(table + 2 * i, lc_table_[i]);
  ptr_file_.write(table, sizeof table);
  char counters[4];
  storeU16(counters, static_cast<std::uint16_t>(keyfile_pos_));
  storeU16(counters + 2, num_chunks_);
  ptr_file_.seekp(8);
  ptr_file_.write(counters, sizeof counters);
  if (!ptr_file_) THROW(IO, "Error writing to pointer file.");
  ptr_file_.close();
  if (!ptr_file_) THROW(IO, "Error writing pointer file.");
}

void KdStopCreator::Add_Entry(const char* key, const void* data, int32 size) {
  WmLocalWord word(key);
  Add_Entry(word.word(), data, size);
}

void KdStopCreator::Add_Entry(const WmWord* key, const void* data, int32) {
  WmLocalWord none;
  const WmWord* data_word = data != nullptr ? static_cast<const WmWord*>(data) : none.word();
  if (key->num_letters() > kKdStopMaxKey) THROW(KdWordTooBig, "Key too long: " << *key);
  if (data_word->num_letters() > kKdStopMaxData) {
    THROW(KdWordTooBig, "Data too big: " << *data_word);
  }
  if (KdStopLetter(key) < 0) THROW(KdInit, "Key must begin with a letter: " << *key);
  if (WmWord::cmp(key, prev_key_.word()) <= 0) {
    std::cout << "Key out of order, left out: " << *key << std::endl;
    return;
  }
  const bool new_letter = !prev_key_->valid() || prev_key_->letter(0) != key->letter(0);
  in_ptr_file_ = 0;
  if (new_letter || Overflow(key, data_word)) {
    Write_To_Pointer_File(key);
    Write_Chunk_To_Disk();
    in_ptr_file_ = 1;
  }
  Add_Entry_To_Buffer(key, data_word);
  prev_key_ = WmLocalWord(*key);
  prev_data_ = WmLocalWord(*data_word);
}

bool KdStopCreator::Overflow(const WmWord* key, const WmWord* data) const {
  const int entry = kMapBytes + key->num_letters() - KdCommonLetters(prev_key_.word(), key) +
                    storedDataLetters(key, data);
  if (entry > max_chunk_size_) THROW(KdInit, "Each entry must be smaller than the chunk size.");
  return entry + chunk_bytes_ >= max_chunk_size_;
}

void KdStopCreator::Add_Entry_To_Buffer(const WmWord* key, const WmWord* data) {
  const int common = in_ptr_file_ ? 0 : KdCommonLetters(prev_key_.word(), key);
  unsigned char* const entry = chunk_buf_.get() + chunk_bytes_;
  unsigned char* to = entry + kMapBytes;
  KdPutMap(entry, common, key->num_letters());
  to += KdPutLetters(to, true, key, common);
  entry[1] = kKdStopNoData;
  if (data->valid()) {
    const int shared = lz_data_ != 0 ? commonWithKey(key, data) : 0;
    KdPutMap(entry + 1, shared, data->num_letters());
    to += KdPutLetters(to, true, data, shared);
  }
  entry_size_ = static_cast<int>(to - entry);
  // The first entry of a chunk stores its whole key, and was not measured so.
  if (chunk_bytes_ + entry_size_ > max_chunk_size_) {
    THROW(KdInit, "Each entry must be smaller than the chunk size.");
  }
  chunk_bytes_ += entry_size_;
}

void KdStopCreator::Write_To_Pointer_File(const WmWord* key) {
  keyfile_pos_ += (chunk_bytes_ + 1) / 2;
  if (keyfile_pos_ > USHRT_MAX) THROW(IO, "Key file would pass " << 2 * USHRT_MAX << " bytes.");
  char record[2 + 1 + kKdStopMaxKey];
  storeU16(record, static_cast<std::uint16_t>(keyfile_pos_));
  std::memcpy(record + 2, key, static_cast<std::size_t>(key->num_bytes()));
  ptr_file_.write(record, 2 + key->num_bytes());
  if (!ptr_file_) THROW(IO, "Error writing to pointer file.");
  // The letter a begins with the first chunk or has no key.
  for (; next_letter_ <= KdStopLetter(key); ++next_letter_) {
    if (next_letter_ > 0) lc_table_[static_cast<std::size_t>(next_letter_)] = num_chunks_;
  }
  ++num_chunks_;
}

void KdStopCreator::Write_Chunk_To_Disk() {
  if (chunk_bytes_ % 2 != 0) chunk_buf_[static_cast<std::size_t>(chunk_bytes_++)] = 0;
  key_file_.write(reinterpret_cast<const char*>(chunk_buf_.get()), chunk_bytes_);
  if (!key_file_) THROW(IO, "Can't write to key file.");
  chunk_bytes_ = 0;
}

void KdStopCreator::Separate_Last_Entry() {
  if (in_ptr_file_) return;
  chunk_bytes_ -= entry_size_;
  Write_To_Pointer_File(prev_key_.word());
  Write_Chunk_To_Disk();
  in_ptr_file_ = 1;
  Add_Entry_To_Buffer(prev_key_.word(), prev_data_.word());
}

}  // namespace vandrelle
