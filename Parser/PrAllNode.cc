#include "Parser/PrAllNode.h"

#include <algorithm>

namespace vandrelle {

int PrAllNode::next(int* doc, float* score) {
  const int found = std::max(*doc, 0);
  if (found >= numdocs_) return 0;
  *doc = found;
  *score = 1.0f;
  return 1;
}

}  // namespace vandrelle
