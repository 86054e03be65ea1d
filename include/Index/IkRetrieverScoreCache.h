// The factors by which each dimension of a query vector weighs term frequencies.
#pragma once

#include <vector>

#include "Index/IkQueryInfo.h"
#include "Index/IkSimilarity.h"

namespace vandrelle {

class IkRetrieverScoreCache {
 public:
  // For `querySize` dimensions; keeps products ready for frequencies below `maxFreq`.
  // Doesn't own `sim`.
  void init(const IkQueryInfo* queryInfo, int querySize, int maxFreq, const IkSimilarity* sim);

  // Damped frequency times value times idf of dimension `i`, for a document with this
  // norm byte. `freq` is at least 0 and counts at most as 16 bits hold.
  float product(int i, int freq, unsigned char norm) const {
    if (freq < maxFreq_ && freq <= sim_->tfLimits[norm]) {
      return cache_[static_cast<std::size_t>(i * maxFreq_ + freq)];
    }
    const auto counted = static_cast<std::uint16_t>(freq < 0xFFFF ? freq : 0xFFFF);
    return sim_->TF(counted, norm) * multiplier_[static_cast<std::size_t>(i)];
  }

 private:
  int maxFreq_ = 0;
  std::vector<float> multiplier_;  // value times idf
  std::vector<float> cache_;       // maxFreq_ products a dimension
  const IkSimilarity* sim_ = nullptr;
};

}  // namespace vandrelle
