// Streams over the entries of the key files. One reads the key file in runs of
// its own, through the descriptor that it shares with the accessor.
//
// A stream is reset once, at the beginning. reset() on a stream that has been
// advanced doesn't let the chunk in the buffer go: the entries of that chunk come
// first, and then those of the whole file. Existing users don't mind, and one
// that did would take a new stream.
#pragma once

#include <memory>

#include "KeyFile/KdChunkAccessor.h"

namespace vandrelle {

class KdStreamImpl : public KdStream {
 public:
  void reset() override;
  // The empty word, and one behind the last, leave the stream where it is: the
  // next chunk's first entry is decoded.
  void reset(const WmWord* startWord) override;
  int more() override { return table_.count() >= chunk_num_; }
  int next() override;
  WmWord* key() override { return this_key_; }
  int keySize() override { return this_key_->num_bytes(); }
  void* data() override { return this_data_; }
  int dataSize() override { return data_size_; }

 protected:
  explicit KdStreamImpl(const KdChunkAccessor* accessor);

  // Makes sure that an entry stands at chunk_bytes_, loading a chunk if need be;
  // false at the end.
  bool Prepare_Next();
  // Takes an entry apart and moves behind it; throws if it is damaged.
  void Read_Entry(KdChunkEntry* entry);
  // Puts the letters of an entry into the current word.
  void Take_Letters(const KdChunkEntry& entry);
  void Take_Data(const unsigned char* from, int32 bytes);

  static constexpr int32 kRunBytes = 16 * 1024;
  static constexpr int32 kMaxDataBytes = 256;

  const KdChunkLayout layout_;
  const unsigned char* chunk_ = nullptr;  // the loaded chunk, in run_
  int32 chunk_bytes_ = 0;                 // read position in it
  int32 this_chunk_size_ = 0;
  int32 data_size_ = 0;

 private:
  void Get_New_Chunk();

  const FILE_DES key_file_;
  const KdPointerTable& table_;
  int32 chunk_num_ = 0;  // the next to load; counts past the end, too
  std::unique_ptr<unsigned char[]> run_;
  int32 run_begin_ = 0;  // of the bytes in run_, in the key file
  int32 run_bytes_ = 0;
  WmWord* this_key_;
  char key_buffer_[65];
  alignas(8) unsigned char this_data_[kMaxDataBytes] = {};
};

class KdStreamCon final : public KdStreamImpl {
 public:
  explicit KdStreamCon(const KdChunkAccessor* accessor) : KdStreamImpl(accessor) {}
};

class KdStreamVar final : public KdStreamImpl {
 public:
  explicit KdStreamVar(const KdChunkAccessor* accessor) : KdStreamImpl(accessor) {}
};

// Of kind 11. It takes 8 bytes of data where the files have 4, and so loses its
// place in a chunk with flagged entries, which mostly ends in _Exception_KdStream
// although the file is sound. Lookups are the way to read that kind.
class KdStreamInline final : public KdStreamImpl {
 public:
  explicit KdStreamInline(const KdChunkAccessor* accessor) : KdStreamImpl(accessor) {}
  int next() override;
};

}  // namespace vandrelle
