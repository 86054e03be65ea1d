// The chunks of a key file: how entries are coded, and the two walks over them.
//
// A chunk is a run of front-coded entries, the first of which shares nothing, so
// that each chunk can be read by itself:
//
//   part       bytes            content
//   map        1 or 3           letters shared with the word before, and letters
//   size       1                bytes of data; only where the size varies
//   data       its size         the caller's
//   letters    see below        those that are not shared
//
// Map: of a word with `len` < 23 letters, `common` of them shared, the one byte
// common + len * (len - 1) / 2; of a longer word the bytes 255, common, len.
// Letters: one byte each where the file is aligned; otherwise 5 bits each, from
// the low end of each byte upward, the last byte filled with zero bits.
// Inline files put the data, 4 bytes or none, behind the letters, and tell which
// by the top bit of the first stored letter.
#pragma once

#include <array>
#include <cstring>

#include "KeyFile.h"

namespace vandrelle {

constexpr int kKdMaxLetters = 63;
constexpr int kKdMaxDataBytes = 65;
constexpr int kKdInlineDataBytes = 4;
constexpr unsigned char kKdInlineFlag = 128;
constexpr int kKdShortWordLimit = 23;  // words below it have a map of one byte

enum class KdDataPlace { kConstant, kVariable, kInline };

struct KdChunkLayout {
  KdDataPlace place;
  bool aligned;
  int32 data_size;  // of each entry where it is constant
};

// One decoded map: letters shared and letters that follow. The pairs of bytes
// that no map has (253 to 255) hold the byte itself.
struct KdMap {
  unsigned char common;
  unsigned char non_common;
};
extern const std::array<KdMap, 256> kKdMaps;

inline int KdMapBytes(int letters) { return letters < kKdShortWordLimit ? 1 : 3; }
inline int KdLetterBytes(bool aligned, int letters) {
  return aligned ? letters : (5 * letters + 7) / 8;
}

// Store a map or letters at `to`; return the bytes that they take.
int KdPutMap(unsigned char* to, int common, int letters);
int KdPutLetters(unsigned char* to, bool aligned, const WmWord* word, int common);

// Letter `i` of those stored at `letters`, 5 bits each.
char KdPackedLetter(const unsigned char* letters, int i);

// The length of the longest prefix that two words share.
int KdCommonLetters(const WmWord* a, const WmWord* b);

// An entry in place. `letters` points at the stored letters.
struct KdChunkEntry {
  int common;
  int non_common;
  const unsigned char* letters;
  const unsigned char* data;
  int32 data_size;
  int32 next;  // offset behind the entry
};

// Takes the entry at `offset` apart; false if no whole entry stands there, which
// in a sound file happens only at the chunk's end.
bool KdReadEntry(const KdChunkLayout& layout, const unsigned char* chunk, int32 chunk_bytes,
                 int32 offset, KdChunkEntry* entry);

// Decoded letter `i` of an entry.
inline unsigned char KdEntryLetter(const KdChunkLayout& layout, const KdChunkEntry& entry, int i) {
  if (!layout.aligned) return static_cast<unsigned char>(KdPackedLetter(entry.letters, i));
  const unsigned char letter = entry.letters[i];
  if (i == 0 && layout.place == KdDataPlace::kInline) {
    return static_cast<unsigned char>(letter & ~kKdInlineFlag);
  }
  return letter;
}

enum class KdWalk { kFound, kMissing, kDamaged };

// Looks for a word from the chunk's beginning; on success `*entry` is its entry
// and `*ordinal` counts the entries before it.
KdWalk KdFindWordInChunk(const KdChunkLayout& layout, const unsigned char* chunk, int32 chunk_bytes,
                         const WmWord* search_word, KdChunkEntry* entry, int32* ordinal);

// Builds the word of entry `ordinal` in `word`, a buffer of at least 64 bytes.
KdWalk KdFindOrdinalInChunk(const KdChunkLayout& layout, const unsigned char* chunk,
                            int32 chunk_bytes, int32 ordinal, WmWord* word);

// Does the chunk begin with `word`? As the letters are coded: where they take 5
// bits, different words may pass for the same.
bool KdChunkBeginsWith(const KdChunkLayout& layout, const unsigned char* chunk, int32 chunk_bytes,
                       const WmWord* word);

}  // namespace vandrelle
