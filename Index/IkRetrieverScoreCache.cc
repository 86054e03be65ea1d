#include "Index/IkRetrieverScoreCache.h"

#include <algorithm>

namespace vandrelle {

void IkRetrieverScoreCache::init(const IkQueryInfo* queryInfo, int querySize, int maxFreq,
                                 const IkSimilarity* sim) {
  maxFreq_ = std::clamp(maxFreq, 0, IkSimilarity::kTfCacheSize);
  sim_ = sim;
  multiplier_.clear();
  cache_.clear();
  for (int i = 0; i < querySize; ++i) {
    const float multiplier = queryInfo[i].value * queryInfo[i].idf;
    multiplier_.push_back(multiplier);
    for (int freq = 0; freq < maxFreq_; ++freq) {
      cache_.push_back(sim->tfCache[freq] * multiplier);
    }
  }
}

}  // namespace vandrelle
