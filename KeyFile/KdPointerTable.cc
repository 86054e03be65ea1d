#include "KeyFile/KdPointerTable.h"

namespace vandrelle {

KdHeader KdHeader::load(const unsigned char* from) {
  KdHeader header;
  header.type = loadS32(from);
  header.chunk_size = loadS32(from + 4);
  header.data_size = loadS32(from + 8);
  header.total_bytes = loadS32(from + kCounters);
  header.num_chunks = loadS32(from + 16);
  return header;
}

void KdHeader::store(unsigned char* to) const {
  storeS32(to, type);
  storeS32(to + 4, chunk_size);
  storeS32(to + 8, data_size);
  storeS32(to + kCounters, total_bytes);
  storeS32(to + 16, num_chunks);
}

const char* KdPointerTable::set(const KdHeader& header, const unsigned char* records,
                                const unsigned char* words, int64_t word_bytes,
                                int64_t keyfile_bytes) {
  if (header.chunk_size < 0) return "a negative chunk size";
  if (header.total_bytes < 0 || header.total_bytes > keyfile_bytes) {
    return "the key file is shorter than it should be";
  }
  records_ = records;
  words_ = words;
  count_ = header.num_chunks;
  total_bytes_ = header.total_bytes;
  const char* fault = check(header.chunk_size, word_bytes);
  if (fault != nullptr) count_ = 0;
  return fault;
}

const char* KdPointerTable::check(int32 chunk_size, int64_t word_bytes) {
  int32 previous_number = -1;
  max_chunk_bytes_ = 0;
  for (int32 i = 0; i < count_; ++i) {
    const int32 begin = offset(i);
    const int32 end = i + 1 < count_ ? offset(i + 1) : total_bytes_;
    if (begin < 0 || begin >= end || end > total_bytes_) return "the chunks' offsets";
    if (end - begin > chunk_size) return "a chunk beyond the chunk size";
    if (end - begin > max_chunk_bytes_) max_chunk_bytes_ = end - begin;
    const int32 at = loadS32(record(i) + 4);
    if (at < 0 || at >= word_bytes) return "a word's offset";
    const int letters = words_[at];
    if (letters == 0 || letters > kKdMaxLetters || int64_t{at} + letters >= word_bytes) {
      return "a word's length";
    }
    // An entry has two bytes at least.
    if (number(i) <= previous_number || number(i) > total_bytes_ / 2) return "the word numbers";
    previous_number = number(i);
  }
  return nullptr;
}

int32 KdPointerTable::Find_Chunk(const WmWord* search_word, bool* in_ptr_file) const {
  *in_ptr_file = false;
  if (count_ == 0 || search_word->num_letters() == 0) return -1;
  int order = WmWord::cmp(search_word, word(0));
  if (order <= 0) {
    *in_ptr_file = order == 0;
    return order == 0 ? 0 : -1;
  }
  order = WmWord::cmp(search_word, word(count_ - 1));
  if (order >= 0) {
    *in_ptr_file = order == 0;
    return order == 0 ? count_ - 1 : -1;
  }
  int32 start = 0;
  int32 finish = count_ - 1;
  while (finish - start > 1) {
    const int32 half = start + (finish - start) / 2;
    order = WmWord::cmp(search_word, word(half));
    if (order == 0) {
      *in_ptr_file = true;
      return half;
    }
    (order > 0 ? start : finish) = half;
  }
  // Chunks never span first letters.
  return search_word->letter(0) == word(start)->letter(0) ? start : -1;
}

int32 KdPointerTable::Find_Chunk_NL(int32 word_num) const {
  if (count_ == 0 || word_num < number(0) || word_num > number(count_ - 1)) return -1;
  int32 start = 0;
  int32 finish = count_;
  while (finish - start > 1) {
    const int32 half = start + (finish - start) / 2;
    (word_num >= number(half) ? start : finish) = half;
  }
  return start;
}

}  // namespace vandrelle
