// Key files: persistent, read-only tables from a word to a small block of data,
// sorted by WmWord::cmp. A word also has a number, its ordinal in that order,
// from 0. A key file is a pair of files of one root name: <root>.key holds the
// entries in chunks, <root>.ptr a header and a record for each chunk.
//
// These are the interfaces of all kinds; KfKeyFileManager makes the objects.
#pragma once

#include "Exception.h"
#include "Tool/ByteOrder.h"
#include "Word.h"

namespace vandrelle {

EXCEPTION_FAMILY(KdAccess);
EXCEPTION_FAMILY(KdCreate);
EXCEPTION_FAMILY(KdFile);
EXCEPTION_FAMILY(KdInit);
EXCEPTION_FAMILY(KdStream);
EXCEPTION_FAMILY(KdWordTooBig);

// The kinds of key files, codes at the beginning of <root>.ptr: how letters are coded,
// what data an entry has, and the form of the files.
enum KdKind : int32 {
  kKdPackedVarying = 7,    // 5 bits    varying                  plain
  kKdPackedConstant = 8,   // 5 bits    constant                 plain
  kKdConstant = 9,         // a byte    constant                 plain
  kKdVarying = 10,         // a byte    varying                  plain
  kKdInline = 11,          // a byte    4 bytes or none, inline  plain
  kKdStop = 12,            // a word    a word                   stop style
  kKdStopToo = 13,         // a word    a word                   stop style
  kKdMappedPointers = 14,  // a byte    constant                 mapped pointer file
  kKdMappedStop = 15,      // a word    a word                   stop style, mapped pointer file
  kKdMapped = 16,          // a byte    constant                 mapped pointer and key file
};

class SysToolsMapObject;
class KdStream;

// Writes a key file. Only after the creator has been destroyed are the files
// whole; until then a reader sees a table without entries or refuses them.
class KdFileCreator {
 public:
  virtual ~KdFileCreator() = default;

  // Enters a word of at most 63 letters with `data_size` bytes, at most 65. Words
  // must come in increasing order: one that is not greater than its predecessor
  // is dropped, and only the stop-style kinds say so. The string form folds to
  // lower case. Throws _Exception_KdInit, _Exception_KdWordTooBig, and
  // _Exception_IO when a file cannot be written.
  virtual void Add_Entry(const WmWord* aWord, const void* data, int32 data_size) = 0;
  virtual void Add_Entry(const char* aWord, const void* data, int32 data_size) = 0;
};

// Reads a key file. The Lookup operations return non-zero if they found what was
// asked for; where they did not, the results stay as they were.
class KdFileAccessor {
 public:
  virtual ~KdFileAccessor() = default;

  // The data of a word, copied to `data`, and their size in bytes. Either may be
  // null; with a null `data` the size may stay unset although the word exists.
  virtual int Lookup(const WmWord* search_word, int32* data_size, void* data) = 0;
  // The word of a number, built in `found_word`, a buffer of at least 64 bytes.
  virtual int Lookup(int32 word_num, WmWord* found_word) = 0;
  // The number of a word; `word_num` may be null.
  virtual int Lookup(const WmWord* search_word, int32* word_num) = 0;
  virtual int32 Num_Entries() = 0;

  // A new stream over all entries, owned by the caller; the accessor must outlive
  // it. Nothing is decoded before its reset().
  virtual KdStream* iterator() = 0;

  // The mapped files of the kinds that map; owned by the accessor.
  virtual SysToolsMapObject* keyMap() { return nullptr; }
  virtual SysToolsMapObject* ptrMap() { return nullptr; }

  // The bytes of data that every entry has, -1 where it varies. A caller whose
  // buffer has a fixed size checks it once after binding: the value comes from
  // the file.
  virtual int32 Data_Size() const { return -1; }
};

// Reads all entries of a key file in order.
class KdStream {
 public:
  virtual ~KdStream() = default;

  // To the first entry, decoded. Meant to be called once, at the beginning.
  virtual void reset() = 0;
  // To the first entry that is not smaller than `startWord`.
  virtual void reset(const WmWord* startWord) = 0;
  // Non-zero while key() and data() hold an entry.
  virtual int more() = 0;
  // Decodes the next entry. 0 at the end; otherwise how many letters its word
  // shares with the predecessor, or -1 for none. Throws _Exception_KdStream on a
  // damaged file.
  virtual int next() = 0;

  // Of the current entry, valid until the next next(). The key size counts the
  // length byte.
  virtual WmWord* key() = 0;
  virtual int keySize() = 0;
  virtual void* data() = 0;
  virtual int dataSize() = 0;
};

}  // namespace vandrelle
