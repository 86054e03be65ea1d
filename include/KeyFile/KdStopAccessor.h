// Readers of the stop-style key files, kinds 12 and 13, and what those of kind 15
// stand on (layout: KdStopCreator.h).
// Such a table has no word numbers. Data are words: `data` of a lookup is a buffer
// of at least 23 bytes that receives a WmWord, the empty one where an entry has
// none, and the data's size counts its length byte, or is 0 for none.
#pragma once

#include <memory>

#include "KeyFile/KdStopEntry.h"

namespace vandrelle {

class KdStopAccessor : public KdFileAccessor {
 public:
  // Owns `keyfile_fd` from now on, unless it throws; the stream stays the
  // caller's. Throws _Exception_KdAccess, as all operations do.
  KdStopAccessor(std::ifstream* ptr_file, int keyfile_fd);
  ~KdStopAccessor() override;

  // A word with a digit is not found: no key is expected to have one.
  int Lookup(const WmWord* search_word, int32* data_size, void* data) override;
  // There are no word numbers: these throw.
  int Lookup(int32 word_num, WmWord* found_word) override;
  int Lookup(const WmWord* search_word, int32* word_num) override;
  int32 Num_Entries() override;

  KdStream* iterator() override;

 protected:
  // Only opens: bindTable() comes next, with the bytes of the pointer file. It
  // answers null, or what is wrong with them.
  explicit KdStopAccessor(int keyfile_fd) : keyfile_fd_(keyfile_fd) {}
  const char* bindTable(const unsigned char* ptr_file, std::size_t bytes);

  FILE_DES keyfile_fd() const { return keyfile_fd_; }
  const KdStopTable& table() const { return table_; }

 private:
  void Read_Chunk_Into_Buf(int chunk_num);
  bool Find_Word_In_Chunk(const WmWord* key, KdStopEntry* entry) const;

  FILE_DES keyfile_fd_;
  KdStopTable table_;
  std::unique_ptr<unsigned char[]> chunk_buf_;
  int chunk_bytes_ = 0;
  int current_chunk_ = 65535;  // no chunk has this number
};

// Reads all entries. The data are a WmWord.
class KdStopStream : public KdStream {
 public:
  // Both must outlive the stream.
  KdStopStream(FILE_DES key_file, const KdStopTable* table);

  void reset() override;
  // Behind the last key there is nothing more.
  void reset(const WmWord* startWord) override;
  int more() override { return more_; }
  int next() override;
  WmWord* key() override { return this_key_.word(); }
  int keySize() override { return this_key_->num_bytes(); }
  void* data() override { return this_data_.word(); }
  int dataSize() override { return this_data_->valid() ? this_data_->num_bytes() : 0; }

 private:
  FILE_DES key_file_;
  const KdStopTable* table_;
  std::unique_ptr<unsigned char[]> chunk_buf_;
  int this_chunk_size_ = 0;
  int chunk_bytes_ = 0;  // read position in the chunk
  int chunk_num_ = 0;    // the next to load
  bool more_ = false;
  WmLocalWord this_key_;
  WmLocalWord this_data_;
};

}  // namespace vandrelle
