#include <sys/types.h>
#include <unistd.h>

#include <algorithm>

#include "KeyFile/KdChunk.h"
#include "KeyFile/KdStopEntry.h"

namespace vandrelle {

namespace {

constexpr int kRecordBytes = 3;  // without the letters

bool readMap(unsigned char map, int max_letters, int* common, int* rest) {
  // 253 to 255 are no map.
  if (map >= 253) return false;
  *common = kKdMaps[map].common;
  *rest = kKdMaps[map].non_common;
  return *common + *rest <= max_letters;
}

}  // namespace

bool KdReadStopEntry(const unsigned char* chunk, int chunk_bytes, int offset, KdStopEntry* entry) {
  const int left = chunk_bytes - offset - 2;
  if (left < 0) return false;
  const unsigned char* from = chunk + offset;
  if (!readMap(from[0], kKdStopMaxKey, &entry->key_common, &entry->key_rest)) return false;
  entry->data_common = 0;
  entry->data_rest = 0;
  if (from[1] != kKdStopNoData) {
    if (!readMap(from[1], kKdStopMaxData, &entry->data_common, &entry->data_rest)) return false;
    if (entry->data_common > entry->key_common + entry->key_rest) return false;
  }
  if (entry->key_rest + entry->data_rest > left) return false;
  entry->key_letters = from + 2;
  entry->data_letters = entry->key_letters + entry->key_rest;
  entry->next = offset + 2 + entry->key_rest + entry->data_rest;
  return true;
}

bool KdStopChunkEnds(const unsigned char* chunk, int chunk_bytes, int offset) {
  return offset == chunk_bytes || (offset == chunk_bytes - 1 && chunk[offset] == 0);
}

void KdStopEntry::buildData(const WmWord* key, WmWord* to) const {
  to->num_letters(data_common + data_rest);
  for (int i = 0; i < data_common; ++i) to->rawletter(i, key->letter(i));
  for (int i = 0; i < data_rest; ++i) {
    to->rawletter(data_common + i, static_cast<char>(data_letters[i]));
  }
}

const char* KdStopTable::read(const unsigned char* from, std::size_t bytes, int64_t keyfile_bytes) {
  if (bytes < kKdStopHeaderBytes + kKdStopTableBytes) return "it is too short";
  if (loadU16(from + 4) > 1) return "the way of storing data";
  const int max_chunk_size = loadS16(from + 6);
  keyfile_bytes_ = 2 * loadU16(from + 8);
  if (keyfile_bytes_ > keyfile_bytes) return "the key file is shorter than it should be";
  const std::size_t record_bytes = bytes - kKdStopHeaderBytes - kKdStopTableBytes;
  const char* fault = readRecords(from + kKdStopHeaderBytes, record_bytes, loadU16(from + 10));
  if (fault != nullptr) return fault;
  for (int i = 0; i < count(); ++i) {
    if (chunkBytes(i) <= 0) return "the chunks' offsets";
    max_chunk_bytes_ = std::max(max_chunk_bytes_, chunkBytes(i));
  }
  if (max_chunk_bytes_ > max_chunk_size + max_chunk_size % 2)
    return "a chunk beyond the chunk size";
  const unsigned char* table = from + kKdStopHeaderBytes + record_bytes;
  for (std::size_t i = 0; i < lc_table_.size(); ++i) lc_table_[i] = loadU16(table + 2 * i);
  return nullptr;
}

const char* KdStopTable::readRecords(const unsigned char* from, std::size_t bytes, int count) {
  records_.reserve(static_cast<std::size_t>(
      std::min<std::size_t>(static_cast<std::size_t>(count), bytes / kRecordBytes)));
  for (int i = 0; i < count; ++i) {
    if (bytes < kRecordBytes) return "the records";
    const std::size_t letters = from[2];
    if (letters > kKdStopMaxKey || letters > bytes - kRecordBytes) return "a key's length";
    sf_ptr_entry record{2 * loadU16(from), WmLocalWord()};
    std::memcpy(static_cast<void*>(record.word.word()), from + 2, 1 + letters);
    if (KdStopLetter(record.word.word()) < 0) return "a key's first letter";
    if (i > 0 && WmWord::cmp(word(i - 1), record.word.word()) >= 0) return "the order of keys";
    records_.push_back(record);
    from += kRecordBytes + letters;
    bytes -= kRecordBytes + letters;
  }
  return bytes == 0 ? nullptr : "the number of chunks";
}

int KdStopTable::chunkBytes(int chunk) const {
  const auto i = static_cast<std::size_t>(chunk);
  return (i + 1 < records_.size() ? records_[i + 1].offset : keyfile_bytes_) - records_[i].offset;
}

// The table of first letters only narrows the search: where it leads astray, the
// whole range takes its place.
int KdStopTable::findChunk(const WmWord* key) const {
  const int last = count() - 1;
  const int letter = KdStopLetter(key);
  if (last < 0 || letter < 0 || WmWord::cmp(key, word(0)) < 0) return -1;
  const int order = WmWord::cmp(key, word(last));
  if (order >= 0) return order == 0 ? last : -1;
  int start = lc_table_[static_cast<std::size_t>(letter)];
  int finish = letter + 1 < kKdStopLetters ? lc_table_[static_cast<std::size_t>(letter + 1)] : last;
  if (start > last || WmWord::cmp(key, word(start)) < 0) start = 0;
  if (finish <= start || finish > last || WmWord::cmp(key, word(finish)) >= 0) finish = last;
  while (finish - start > 1) {
    const int half = start + (finish - start) / 2;
    (WmWord::cmp(key, word(half)) >= 0 ? start : finish) = half;
  }
  // Chunks never span first letters.
  return key->letter(0) == word(start)->letter(0) ? start : -1;
}

int KdStopTable::load(FILE_DES key_file, int chunk, unsigned char* buffer) const {
  const int bytes = chunkBytes(chunk);
  const off_t offset = records_[static_cast<std::size_t>(chunk)].offset;
  if (pread(key_file, buffer, static_cast<std::size_t>(bytes), offset) != bytes) return -1;
  KdStopEntry entry;
  const WmWord* first = word(chunk);
  if (!KdReadStopEntry(buffer, bytes, 0, &entry) || entry.key_common != 0 ||
      entry.key_rest != first->num_letters() ||
      std::memcmp(entry.key_letters, first->letters(), static_cast<std::size_t>(entry.key_rest)) !=
          0) {
    return -1;
  }
  return bytes;
}

}  // namespace vandrelle
