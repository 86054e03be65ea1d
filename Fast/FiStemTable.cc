#include "Fast/FiStemTable.h"

#include <bit>
#include <climits>
#include <cstring>
#include <iomanip>
#include <ostream>

#include "Exception.h"

namespace vandrelle {

namespace {

constexpr int kDefaultBuckets = 128;
constexpr int kFallbackBlockSize = 1024;
constexpr int kBlockHeader = 8;
constexpr uint32 kChainEnd = 0xFFFFFFFF;
constexpr int kMaxEntryBytes = 2 * 256;

// One entry of a block, checked against the bytes in use.
struct StemEntry {
  const unsigned char* stem;
  const unsigned char* word;
  int size;
};

bool entryAt(const unsigned char* bytes, int position, int used, StemEntry* entry) {
  if (position >= used) return false;
  const int stemSize = bytes[position] + 1;
  if (position + stemSize >= used) return false;
  const int wordSize = bytes[position + stemSize] + 1;
  if (position + stemSize + wordSize > used) return false;
  *entry = {bytes + position, bytes + position + stemSize, stemSize + wordSize};
  return true;
}

const WmWord& asWord(const unsigned char* bytes) { return *reinterpret_cast<const WmWord*>(bytes); }

}  // namespace

FiStemTable::~FiStemTable() { flush(); }

uint32 FiStemTable::hash(const WmWord& word) {
  uint32 h = 0;
  for (int i = 0; i < word.num_letters(); ++i) {
    h ^= uint32{static_cast<unsigned char>(word.letter(i))} << (8 * (i % 4));
  }
  return h;
}

int FiStemTable::bucket(uint32 h, int buckets, int sigbits) {
  if (sigbits == 0) sigbits = static_cast<int>(std::bit_width(static_cast<unsigned>(buckets)));
  for (int i = sigbits; i < 32; i += sigbits) h ^= h >> i;
  // Never so: the bit length of a number is that of a larger power of two.
  if (std::int64_t{buckets} == std::int64_t{1} << sigbits) return static_cast<int>(h);
  return static_cast<int>(h % static_cast<uint32>(buckets));
}

void FiStemTable::bind(const char* filename, int wr, int map) {
  if (map != 0) {
    file_.bindMap(filename);
  } else {
    file_.bindRaw(filename, wr);
  }
  if (file_.writeable()) {
    writeHeader();
  } else {
    readHeader(filename);
  }
  setbucketbits();
  numblocks_ = buckets_;
}

void FiStemTable::setbucketbits() {
  bucketbits_ = static_cast<int>(std::bit_width(static_cast<unsigned>(buckets_)));
}

void FiStemTable::writeHeader() {
  if (buckets_ == 0) buckets_ = kDefaultBuckets;
  if (blocksize_ == 0) blocksize_ = kFallbackBlockSize;
  FiFileSegment header = file_.segment(0, headersize_);
  storeLittleU32(header.data(), static_cast<uint32>(buckets_));
  storeLittleU32(header.data() + 4, static_cast<uint32>(blocksize_));
}

void FiStemTable::readHeader(const char* filename) {
  const FiFileSegment header = file_.segment(0, headersize_);
  if (!header.valid() || header.size() < kBlockHeader) {
    THROW(Fatal, "The unstemming table '" << filename << "' ends within its header");
  }
  buckets_ = static_cast<int>(loadLittleU32(header.data()));
  blocksize_ = static_cast<int>(loadLittleU32(header.data() + 4));
  if (buckets_ <= 0 || blocksize_ <= kBlockHeader) {
    THROW(Fatal, "The header of the unstemming table '" << filename << "' is damaged");
  }
}

bool FiStemTable::validblock(int block) const {
  return file_.size() >= (std::int64_t{block} + 1) * blocksize_ + headersize_;
}

FiFileSegment FiStemTable::block(int block) {
  return file_.segment(headersize_ + block * blocksize_, blocksize_);
}

FiFileSegment& FiStemTable::writeBlock(int number) {
  if (number >= (INT_MAX - headersize_) / blocksize_) {
    THROW(Fatal, "The unstemming table would pass 2 gigabytes");
  }
  const std::size_t place = static_cast<std::size_t>(number);
  if (place >= blocks_.size()) blocks_.resize(place + 1);
  if (!blocks_[place].valid()) {
    blocks_[place] = block(number);
    unsigned char* bytes = blocks_[place].data();
    if (static_cast<int>(loadLittleU32(bytes)) < 1) {
      storeLittleU32(bytes, kBlockHeader);
      storeLittleU32(bytes + 4, kChainEnd);
    }
  }
  return blocks_[place];
}

int FiStemTable::placeEntry(int startblock, int size) {
  const std::size_t start = static_cast<std::size_t>(startblock);
  if (start >= chains_.size()) chains_.resize(start + 1);
  Chain& chain = chains_[start];
  if (chain.blocks.empty()) {
    chain.blocks.push_back(startblock);
    chain.firstWithRoom.resize(kMaxEntryBytes + 1);
  }
  std::uint32_t& place = chain.firstWithRoom[static_cast<std::size_t>(size)];
  for (;; ++place) {
    if (place == chain.blocks.size()) {
      const int added = numblocks_++;
      storeLittleU32(writeBlock(chain.blocks.back()).data() + 4, static_cast<uint32>(added));
      chain.blocks.push_back(added);
    }
    const int candidate = chain.blocks[place];
    const int used = static_cast<int>(loadLittleU32(writeBlock(candidate).data()));
    // Strictly: a block never fills to its last byte.
    if (used + size < blocksize_) return candidate;
  }
}

void FiStemTable::insert(const WmWord& word, const WmWord& unstemmed, int startblock) {
  if (!file_.writeable()) return;
  const int size = word.num_bytes() + unstemmed.num_bytes();
  if (size >= blocksize_ - kBlockHeader) {
    THROW(Fatal, "The words '" << word << "' and '" << unstemmed << "' don't fit in a block");
  }
  const int target = placeEntry(startblock < 0 ? bucket(word) : startblock, size);
  unsigned char* bytes = writeBlock(target).data();
  const uint32 used = loadLittleU32(bytes);
  std::memcpy(bytes + used, &word, static_cast<std::size_t>(word.num_bytes()));
  std::memcpy(bytes + used + word.num_bytes(), &unstemmed,
              static_cast<std::size_t>(unstemmed.num_bytes()));
  storeLittleU32(bytes, used + static_cast<uint32>(size));
}

void FiStemTable::flush() {
  for (FiFileSegment& block : blocks_) block = FiFileSegment();
  blocks_.clear();
}

template <typename Take>
void FiStemTable::eachBlock(int first, Take take) {
  // A damaged chain may run in a circle; a sound one has each block once.
  const int limit = (file_.size() - headersize_) / blocksize_;
  int steps = 0;
  for (int number = first; number >= 0 && validblock(number) && steps <= limit; ++steps) {
    const FiFileSegment segment = block(number);
    if (!segment.valid() || segment.size() < blocksize_) return;
    const unsigned char* bytes = segment.data();
    const uint32 used = loadLittleU32(bytes);
    // A block that was never used ends the chain, whatever its zero link says.
    if (used == 0 || used > static_cast<uint32>(blocksize_)) return;
    if (!take(number, bytes, static_cast<int>(used))) return;
    number = static_cast<int>(loadLittleU32(bytes + 4));
  }
}

void FiStemTable::find(const WmWord& word, FdVector<WmMagicWord>& result) {
  flush();
  eachBlock(bucket(word), [&](int, const unsigned char* bytes, int used) {
    StemEntry entry;
    for (int at = kBlockHeader; entryAt(bytes, at, used, &entry); at += entry.size) {
      if (asWord(entry.stem) != word) continue;
      WmMagicWord found(asWord(entry.word));
      for (int i = 0; i < found->num_letters(); ++i) found->letter(i, found->letter(i));
      result.push(found);
    }
    return true;
  });
}

void FiStemTable::dump(const WmWord& word, std::ostream& os) {
  flush();
  eachBlock(bucket(word), [&](int number, const unsigned char* bytes, int used) {
    os << number << " =================\n";
    StemEntry entry;
    for (int at = kBlockHeader; entryAt(bytes, at, used, &entry); at += entry.size) {
      os << asWord(entry.stem) << " => " << asWord(entry.word) << '\n';
    }
    return true;
  });
}

void FiStemTable::statdump(std::ostream& os) {
  flush();
  for (int i = 0; i < buckets_; ++i) {
    int bytesUsed = 0;
    int blocks = 0;
    eachBlock(i, [&](int, const unsigned char*, int used) {
      bytesUsed += used;
      ++blocks;
      return true;
    });
    os << "bucket " << std::setw(6) << i << ": " << std::setw(6) << bytesUsed << " bytes in "
       << std::setw(4) << blocks << " blocks\n";
  }
}

}  // namespace vandrelle
