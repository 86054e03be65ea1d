// From a word of an index to its number and the position of its row, and back.
#pragma once

#include "Storage/StStoragePos.h"

namespace vandrelle {

class WmWord;

class IkWordTable {
 public:
  virtual ~IkWordTable() = default;

  // Non-zero if the index has the word; `position` is then that of its row in
  // the row data file, else untouched.
  virtual int lookup(const WmWord* word, StStoragePos& position) = 0;
  // The word's number, or -1.
  virtual int wordNum(const WmWord* word) = 0;
  // The word with a number, or null. Good until the next call.
  virtual const WmWord* word(int num) = 0;

  // As the first, for rows within 32 bits. Throws _Exception_Ik for others.
  int lookup(const WmWord* word, int* cookie);
};

}  // namespace vandrelle
