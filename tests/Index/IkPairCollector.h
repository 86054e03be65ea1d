// The pairs of a row of the data file, as its reader hands them out.
#pragma once

#include <utility>
#include <vector>

#include "Index/IkDataFileUnpacker.h"

namespace vandrelle {

using Pairs = std::vector<std::pair<int, int>>;

class PairCollector : public IkDataFileUnpacker {
 public:
  void action(int doc_num, int doc_freq, float) override { pairs.emplace_back(doc_num, doc_freq); }
  Pairs pairs;
};

}  // namespace vandrelle
