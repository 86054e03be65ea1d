// What all readers of key files share: a lookup is a bisection over the pointer
// records and the walk of one chunk, which is read through the descriptor (or
// taken from a mapping) unless it is the current one. Nothing is allocated after
// construction.
//
// A damaged file is an error where it is met: the records are checked when the
// table is bound, a chunk when it is loaded (it must begin with the word of its
// record) and while it is walked.
#pragma once

#include <memory>

#include "KeyFile.h"
#include "KeyFile/KdChunk.h"
#include "KeyFile/KdPointerTable.h"

namespace vandrelle {

class KdChunkAccessor : public KdFileAccessor {
 public:
  ~KdChunkAccessor() override = default;

  int Lookup(const WmWord* search_word, int32* data_size, void* data) override;
  int Lookup(int32 word_num, WmWord* found_word) override;
  int Lookup(const WmWord* search_word, int32* word_num) override;
  int32 Num_Entries() override { return table_.num_words(); }
  int32 Data_Size() const override {
    return layout_.place == KdDataPlace::kConstant ? layout_.data_size : -1;
  }

  const KdPointerTable& table() const { return table_; }
  const KdChunkLayout& layout() const { return layout_; }
  FILE_DES keyfile_fd() const { return keyfile_fd_; }

 protected:
  explicit KdChunkAccessor(FILE_DES keyfile_fd) : keyfile_fd_(keyfile_fd) {}

  // Sets the table and checks it; throws through fail().
  void bindTable(const KdHeader& header, const unsigned char* records, const unsigned char* words,
                 int64_t word_bytes);
  // Chunks are taken from `mapped`, a mapping of the whole key file, from now on.
  void useKeyMap(const unsigned char* mapped) { mapped_ = mapped; }
  void Close_Keyfile();

  // Throws in the family of this kind of accessor, from the caller's place: each
  // class has the name of its own source as default.
  [[noreturn]] virtual void fail(const char* text, const char* detail = "",
                                 const char* source = "KdChunkAccessor",
                                 int line = __builtin_LINE()) = 0;

  KdChunkLayout layout_{KdDataPlace::kConstant, true, 0};

 private:
  void Read_Chunk_Into_Buf(int32 chunk_num);
  bool Find_Word_In_Chunk(const WmWord* search_word, int32* chunk_wd_num, KdChunkEntry* entry);
  // The word of entry `word_num` of the current chunk.
  void Find_By_Num(int32 word_num, WmWord* found_word);
  void Get_Data(const KdChunkEntry& entry, int32* data_size, void* data) const;

  FILE_DES keyfile_fd_;
  KdPointerTable table_;
  const unsigned char* mapped_ = nullptr;
  std::unique_ptr<unsigned char[]> chunk_buf_;
  const unsigned char* chunk_ = nullptr;  // the current chunk
  int32 current_chunk_ = -1;
  int32 chunk_bytes_ = 0;
};

}  // namespace vandrelle
