#include "KeyFile/KdChunk.h"

namespace vandrelle {

namespace {

constexpr unsigned char kLongMap = 255;
constexpr int kOtherLetter = 29;
constexpr char kPackedLetters[33] = "abcdefghijklmnopqrstuvwxyz -'***";

constexpr std::array<KdMap, 256> makeMaps() {
  std::array<KdMap, 256> maps{};
  for (int i = 0; i < 256; ++i) {
    const unsigned char self = static_cast<unsigned char>(i);
    maps[self] = {self, self};
  }
  for (int letters = 1; letters < kKdShortWordLimit; ++letters) {
    for (int common = 0; common < letters; ++common) {
      maps[static_cast<std::size_t>(common + letters * (letters - 1) / 2)] = {
          static_cast<unsigned char>(common), static_cast<unsigned char>(letters - common)};
    }
  }
  return maps;
}

int packedCode(char letter) {
  const char folded = WmWord::AsciiToWm(letter);
  if (folded >= 'a' && folded <= 'z') return folded - 'a';
  switch (folded) {
    case ' ':
      return 26;
    case '-':
      return 27;
    case '\'':
      return 28;
    default:
      return kOtherLetter;
  }
}

}  // namespace

const std::array<KdMap, 256> kKdMaps = makeMaps();

int KdPutMap(unsigned char* to, int common, int letters) {
  if (letters < kKdShortWordLimit) {
    to[0] = static_cast<unsigned char>(common + letters * (letters - 1) / 2);
    return 1;
  }
  to[0] = kLongMap;
  to[1] = static_cast<unsigned char>(common);
  to[2] = static_cast<unsigned char>(letters);
  return 3;
}

int KdPutLetters(unsigned char* to, bool aligned, const WmWord* word, int common) {
  const int letters = word->num_letters() - common;
  if (aligned) {
    std::memcpy(to, word->letters() + common, static_cast<std::size_t>(letters));
    return letters;
  }
  unsigned waiting = 0;
  int bits = 0;
  int bytes = 0;
  for (int i = common; i < word->num_letters(); ++i) {
    waiting |= static_cast<unsigned>(packedCode(word->letter(i))) << bits;
    bits += 5;
    if (bits >= 8) {
      to[bytes++] = static_cast<unsigned char>(waiting);
      waiting >>= 8;
      bits -= 8;
    }
  }
  if (bits > 0) to[bytes++] = static_cast<unsigned char>(waiting);
  return bytes;
}

char KdPackedLetter(const unsigned char* letters, int i) {
  const int bit = 5 * i;
  const int shift = bit % 8;
  unsigned code = static_cast<unsigned>(letters[bit / 8]) >> shift;
  if (shift > 3) code |= static_cast<unsigned>(letters[bit / 8 + 1]) << (8 - shift);
  return kPackedLetters[code & 31];
}

int KdCommonLetters(const WmWord* a, const WmWord* b) {
  const int limit = a->num_letters() < b->num_letters() ? a->num_letters() : b->num_letters();
  const char* lettersA = a->letters();
  const char* lettersB = b->letters();
  int common = 0;
  while (common < limit && lettersA[common] == lettersB[common]) ++common;
  return common;
}

bool KdReadEntry(const KdChunkLayout& layout, const unsigned char* chunk, int32 chunk_bytes,
                 int32 offset, KdChunkEntry* entry) {
  if (offset >= chunk_bytes) return false;
  const unsigned char* from = chunk + offset;
  int32 left = chunk_bytes - offset - 1;
  if (*from != kLongMap) {
    const KdMap map = kKdMaps[*from++];
    entry->common = map.common;
    entry->non_common = map.non_common;
  } else {
    if (left < 2) return false;
    entry->common = from[1];
    entry->non_common = from[2] - from[1];
    from += 3;
    left -= 2;
  }
  if (entry->non_common <= 0 || entry->common + entry->non_common > kKdMaxLetters) return false;
  const int letters = KdLetterBytes(layout.aligned, entry->non_common);
  if (layout.place == KdDataPlace::kInline) {
    if (letters > left) return false;
    entry->letters = from;
    entry->data = from + letters;
    entry->data_size = (*from & kKdInlineFlag) != 0 ? kKdInlineDataBytes : 0;
  } else {
    entry->data_size = layout.data_size;
    if (layout.place == KdDataPlace::kVariable) {
      if (left < 1) return false;
      entry->data_size = *from++;
      --left;
      if (entry->data_size > kKdMaxDataBytes) return false;
    }
    if (entry->data_size > left) return false;
    entry->data = from;
    entry->letters = from + entry->data_size;
  }
  if (letters + entry->data_size > left) return false;
  entry->next = static_cast<int32>(from - chunk) + entry->data_size + letters;
  return true;
}

// Entries are sorted and front-coded, so no letter is compared twice: `matches`
// letters of the search word are confirmed, and an entry that shares more than
// those with its predecessor is smaller as that one was.
KdWalk KdFindWordInChunk(const KdChunkLayout& layout, const unsigned char* chunk, int32 chunk_bytes,
                         const WmWord* search_word, KdChunkEntry* entry, int32* ordinal) {
  const int length = search_word->num_letters();
  int matches = 0;
  int32 count = 0;
  for (int32 offset = 0; offset != chunk_bytes; offset = entry->next, ++count) {
    if (!KdReadEntry(layout, chunk, chunk_bytes, offset, entry)) return KdWalk::kDamaged;
    if (entry->common < matches) return KdWalk::kMissing;
    if (entry->common > matches) continue;
    int compared = 0;
    while (compared < entry->non_common && matches < length) {
      const unsigned char stored = KdEntryLetter(layout, *entry, compared);
      const unsigned char wanted = static_cast<unsigned char>(search_word->letter(matches));
      if (stored > wanted) return KdWalk::kMissing;
      if (stored < wanted) break;
      ++compared;
      ++matches;
    }
    if (matches == length) {
      if (compared != entry->non_common) return KdWalk::kMissing;
      *ordinal = count;
      return KdWalk::kFound;
    }
  }
  return KdWalk::kMissing;
}

KdWalk KdFindOrdinalInChunk(const KdChunkLayout& layout, const unsigned char* chunk,
                            int32 chunk_bytes, int32 ordinal, WmWord* word) {
  word->num_letters(0);
  int32 offset = 0;
  for (int32 count = 0;; ++count) {
    KdChunkEntry entry;
    if (offset == chunk_bytes) return KdWalk::kMissing;
    if (!KdReadEntry(layout, chunk, chunk_bytes, offset, &entry) ||
        entry.common > word->num_letters()) {
      return KdWalk::kDamaged;
    }
    for (int i = 0; i < entry.non_common; ++i) {
      word->rawletter(entry.common + i, static_cast<char>(KdEntryLetter(layout, entry, i)));
    }
    word->num_letters(entry.common + entry.non_common);
    if (count == ordinal) return KdWalk::kFound;
    offset = entry.next;
  }
}

bool KdChunkBeginsWith(const KdChunkLayout& layout, const unsigned char* chunk, int32 chunk_bytes,
                       const WmWord* word) {
  KdChunkEntry entry;
  if (!KdReadEntry(layout, chunk, chunk_bytes, 0, &entry)) return false;
  if (entry.common != 0 || entry.non_common != word->num_letters()) return false;
  unsigned char coded[kKdMaxLetters];
  const int bytes = KdPutLetters(coded, layout.aligned, word, 0);
  if (layout.place == KdDataPlace::kInline) {
    coded[0] = static_cast<unsigned char>((coded[0] & ~kKdInlineFlag) |
                                          (entry.letters[0] & kKdInlineFlag));
  }
  return std::memcmp(coded, entry.letters, static_cast<std::size_t>(bytes)) == 0;
}

}  // namespace vandrelle
