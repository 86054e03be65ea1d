// The idf of words that were asked for, up to a limit; when it is full, a word
// drawn at random makes room.
#pragma once

#include <map>
#include <vector>

#include "MagicWord.h"

namespace vandrelle {

class IkDataFileBinder;
class IkWordTable;

class IkIdfCache {
 public:
  static constexpr int kDefaultSize = 128;

  // Owns neither. A miss moves the binder to the word's row.
  IkIdfCache(IkWordTable* wordTable, IkDataFileBinder* dataFile)
      : wordTable_(wordTable), dataFile_(dataFile) {}

  // The idf in the word's row, 0 for a word that the index hasn't got.
  float idf(const WmWord& word);

  // The most words that are kept, at least 0.
  void cacheSize(int size);
  int cacheSize() const { return cacheSize_; }

 private:
  float cacheMiss(const WmMagicWord& word);

  int cacheSize_ = kDefaultSize;
  std::map<WmMagicWord, float> cache_;
  std::vector<WmMagicWord> replace_;  // the words of cache_
  IkWordTable* wordTable_;
  IkDataFileBinder* dataFile_;
};

}  // namespace vandrelle
