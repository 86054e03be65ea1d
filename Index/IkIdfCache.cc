#include "Index/IkIdfCache.h"

#include <algorithm>

#include "Index/IkDataFileBinder.h"
#include "Index/IkWordTable.h"
#include "Tool/Random.h"

namespace vandrelle {

float IkIdfCache::idf(const WmWord& word) {
  const WmMagicWord key(word);
  const auto found = cache_.find(key);
  return found != cache_.end() ? found->second : cacheMiss(key);
}

float IkIdfCache::cacheMiss(const WmMagicWord& word) {
  float idf = 0.0f;
  StStoragePos position;
  if (wordTable_->lookup(word.word(), position)) {
    dataFile_->seek(position);
    // A damaged word table may lead past the end, where seek() stays.
    if (dataFile_->tell() == position) idf = dataFile_->scale();
  }
  if (cacheSize_ == 0) return idf;
  if (static_cast<int>(replace_.size()) < cacheSize_) {
    replace_.push_back(word);
  } else {
    WmMagicWord& place = replace_[static_cast<std::size_t>(Random::integer(cacheSize_))];
    cache_.erase(place);
    place = word;
  }
  cache_.emplace(word, idf);
  return idf;
}

void IkIdfCache::cacheSize(int size) {
  cacheSize_ = std::max(size, 0);
  while (static_cast<int>(replace_.size()) > cacheSize_) {
    cache_.erase(replace_.back());
    replace_.pop_back();
  }
}

}  // namespace vandrelle
