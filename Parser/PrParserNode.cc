#include "Parser/PrParserNode.h"

namespace vandrelle {

float PrParserNode::score(int doc) {
  int found = doc;
  float value = 0;
  return next(&found, &value) && found == doc ? value : 0;
}

}  // namespace vandrelle
