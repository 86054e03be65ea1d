#include "Parser/PrScoreFunction.h"

#include <algorithm>

namespace vandrelle {

float CombineAverage(float* scores, int count) {
  float sum = 0;
  for (int i = 0; i < count; ++i) sum += scores[i];
  return sum;
}

float CombineNormalized(float* scores, int count) {
  float product = 1;
  for (int i = 0; i < count; ++i) product *= 1 - scores[i];
  return 1 - product;
}

float CombineProduct(float* scores, int count) {
  float product = 1;
  for (int i = 0; i < count; ++i) {
    if (scores[i] > 0) product *= scores[i];
  }
  return product;
}

float CombineMax(float* scores, int count) {
  return count > 0 ? *std::max_element(scores, scores + count) : 0;
}

float CombineMin(float* scores, int count) {
  return count > 0 ? *std::min_element(scores, scores + count) : 0;
}

}  // namespace vandrelle
