// The record of the bags in memory: one heap block that holds the link, both
// sizes, the key and the data.
//
//   offset  size
//   0       8     next
//   8       4     FdPairInfo
//   12      2, 2  exact sizes of key and data in bytes
//   16            key, padded with zeros to 8 bytes
//                 data
//
// Key and data stand on multiples of 8, so that pointers and numbers in them may
// be used where they are.
#pragma once

#include <cstdint>
#include <iosfwd>

namespace vandrelle {

// From the high bits: 12 of the key's hash, 10 of key size, 10 of data size, both
// sizes in 4-byte words, rounded up.
class FdPairInfo {
 public:
  FdPairInfo() = default;
  explicit FdPairInfo(std::uint32_t packed) : packed_(packed) {}
  // Sizes in bytes, at most FdPair::kMaxBytes.
  FdPairInfo(int hash, int keySize, int dataSize)
      : packed_((static_cast<std::uint32_t>(hash) & 0xfffu) << 20 |
                ((static_cast<std::uint32_t>(keySize) + 3) / 4 & 0x3ffu) << 10 |
                ((static_cast<std::uint32_t>(dataSize) + 3) / 4 & 0x3ffu)) {}

  int hash() const { return static_cast<int>(packed_ >> 20); }
  int keyWords() const { return static_cast<int>(packed_ >> 10 & 0x3ffu); }
  int dataWords() const { return static_cast<int>(packed_ & 0x3ffu); }
  std::uint32_t packed() const { return packed_; }

 private:
  std::uint32_t packed_ = 0;
};

class FdPair {
 public:
  // The most that a key, and a data block, may have.
  static constexpr int kMaxBytes = 1023 * 4;

  // New blocks, owned by the caller and given back through destroy(). The first
  // form throws _Exception_FdPair for a null key, and for sizes above kMaxBytes;
  // null data counts its size and stands as zeros. The second has its key and data
  // still to be set.
  static FdPair* make(int hash, const void* key, int keySize, const void* data, int dataSize);
  static FdPair* make(FdPairInfo info);
  static FdPair* make(const FdPair* pair);
  static void destroy(FdPair* pair);

  // The written form: the packed word, big-endian, then key and data, each padded
  // to a multiple of 4. A run of pairs ends with four zero bytes; the pair with
  // neither key nor data, whose word would be 0 too, has all bits of the hash set,
  // which no empty key has otherwise. read() makes the pair in `place` (blockBytes() of the largest
  // sizes) or, with null, allocates; null at the end of the run or of the stream.
  static FdPair* read(std::istream& is, void* place);
  static void write(std::ostream& os, const FdPair* pair);
  static void writeEnd(std::ostream& os);

  // Overwrite all of `pair`, or a part; the block must have been made for sizes
  // that are at least as large.
  static void copy(FdPair* pair, const FdPair* from);
  static void setPair(FdPair* pair, int hash, const void* key, int keySize, const void* data,
                      int dataSize);
  static void setKey(FdPair* pair, const void* key, int keySize);
  static void setData(FdPair* pair, const void* data, int dataSize);

  // Bytes of a whole block.
  static std::size_t blockBytes(FdPairInfo info);

  FdPair* next() const { return next_; }
  void next(FdPair* pair) { next_ = pair; }
  FdPairInfo info() const { return info_; }

  void* key() { return bytes(); }
  const void* key() const { return const_cast<FdPair*>(this)->bytes(); }
  void* data() { return bytes() + keyRoom(info_); }
  const void* data() const { return const_cast<FdPair*>(this)->data(); }

  // In bytes, rounded up to whole words.
  int keySize() const { return info_.keyWords() * 4; }
  int dataSize() const { return info_.dataWords() * 4; }

  // Copy key or data out, as FdBag::find() has it. Only the bytes that were put in
  // are written, so a block of 2 bytes needs no room for 4.
  void copyKey(void* place, int* size) const;
  void copyData(void* place, int* size) const;

 private:
  explicit FdPair(FdPairInfo info) : info_(info) {}

  static int keyRoom(FdPairInfo info) { return (info.keyWords() * 4 + 7) & ~7; }
  char* bytes() { return reinterpret_cast<char*>(this + 1); }

  FdPair* next_ = nullptr;
  FdPairInfo info_;
  std::uint16_t exactKeySize_ = 0;
  std::uint16_t exactDataSize_ = 0;
};

static_assert(sizeof(FdPair) % 8 == 0);

}  // namespace vandrelle
