#include "Parser/PrRangeNode.h"

#include <algorithm>

namespace vandrelle {

int PrRangeNode::next(int* doc, float* score) {
  const int found = std::max(*doc, start_);
  if (found > finish_) return 0;
  *doc = found;
  *score = 1.0f;
  return 1;
}

}  // namespace vandrelle
