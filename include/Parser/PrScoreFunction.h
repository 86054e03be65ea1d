// How a node makes one score of its children's.
#pragma once

namespace vandrelle {

// Gets `count` scores, each already multiplied by its child's weight.
using ScoreFunction = float (*)(float* scores, int count);

// The sum: with normalised weights the weighted average.
float CombineAverage(float* scores, int count);

// 1 - product(1 - score): the scores taken as independent probabilities.
float CombineNormalized(float* scores, int count);

// The product of the scores above 0; 1.0 if there is none.
float CombineProduct(float* scores, int count);

// 0 for no scores.
float CombineMax(float* scores, int count);
float CombineMin(float* scores, int count);

}  // namespace vandrelle
