// What a stemmer asks of a table of stop words.
#pragma once

#include "Word.h"

namespace vandrelle {

class TkStopLookup {
 public:
  virtual ~TkStopLookup() = default;

  // 1 if `word` is in the table, else 0. If it is, its replacement is copied to
  // `data`, unless that is null: at most 64 bytes, the invalid word for a word
  // that is just not indexed. Else `data` is left alone.
  virtual int stop(const WmWord* word, WmWord* data) = 0;
};

}  // namespace vandrelle
