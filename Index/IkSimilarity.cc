#include "Index/IkSimilarity.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Word.h"

namespace vandrelle {

namespace {

// A document is taken as words of 7 characters, and no word counts for more
// than a tenth of them.
constexpr float CharsPerWord = 7.0f;
constexpr float MaxDensity = 0.1f;

}  // namespace

const float IkSimilarity::standardCoordTable[] = {0.0f, 0.01f, 0.0333f, 0.1f, 0.2f,
                                                  0.4f, 0.6f,  0.8f,    0.9f, 0.95f};
const float IkSimilarity::nullCoordTable[] = {1.0f, 1.0f, 1.0f, 1.0f, 1.0f,
                                              1.0f, 1.0f, 1.0f, 1.0f, 1.0f};

IkSimilarity::IkSimilarity()
    : tfLimits{},
      normTfCache{},
      coordTable(nullCoordTable),
      minDocumentLength(0),
      normScale(0),
      normDecoder{} {
  for (int i = 0; i < kTfCacheSize; ++i) tfCache[i] = std::sqrt(static_cast<float>(i));
  InitIdfCache(0);
}

void IkSimilarity::bind(const IkIndexInfo* info) {
  InitIdfCache(static_cast<uint32>(info->totalNumChunks) -
               static_cast<uint32>(info->numDeletedChunks));
  minDocumentLength = info->minDocumentLength;
  normScale = 255.0f / (1.0f / std::sqrt(minDocumentLength));
  constexpr float wordsPerChar = MaxDensity / CharsPerWord;
  for (int i = 0; i < 256; ++i) {
    normDecoder[i] = static_cast<float>(i) / normScale;
    const float root = 1.0f / normDecoder[i];
    const float limit = wordsPerChar * (root * root);
    // Byte 0 decodes to an infinite length.
    tfLimits[i] = limit < 65535.0f ? static_cast<std::uint16_t>(limit) : std::uint16_t{65535};
  }
  InitNormTfCache();
}

void IkSimilarity::InitIdfCache(uint32 liveChunks) {
  totalNumChunks = liveChunks;
  for (int i = 0; i < kIdfCacheSize; ++i) idfCache[i] = logOfQuotient(i);
}

float IkSimilarity::logOfQuotient(int df) const {
  const float quotient = static_cast<float>(totalNumChunks + 1) / static_cast<float>(df);
  return static_cast<float>(std::log(static_cast<double>(quotient)));
}

float IkSimilarity::rootOf(std::uint16_t freq) { return std::sqrt(static_cast<float>(freq)); }

int IkSimilarity::InverseIDF(float idf) const {
  const float power = static_cast<float>(std::exp(static_cast<double>(idf)));
  const float df = std::floor(static_cast<float>(totalNumChunks + 1) / power + 0.1f);
  if (!(df >= 0)) return -1;
  constexpr float kLimit = 2147483648.0f;
  return df < kLimit ? static_cast<int>(df) : std::numeric_limits<int>::max();
}

// A frequency of 1 in a document too short for any goes to 0 here: such a
// document can't score.
void IkSimilarity::InitNormTfCache() {
  for (int i = 0; i < 256; ++i) {
    const auto byte = static_cast<std::uint8_t>(i);
    normTfCache[i] = TF(1, byte) * normDecoder[i];
  }
}

void IkSimilarity::NormIncrement(float& norm, std::uint16_t tf, const WmWord* word) {
  norm += static_cast<float>(tf * (word->num_letters() + 1));
}

std::uint8_t IkSimilarity::Norm2Byte(float length) const {
  if (!(length > 0)) return 0;
  const float counted = std::max(length, minDocumentLength);
  const auto norm = static_cast<float>(1.0 / std::sqrt(static_cast<double>(counted)));
  const float scaled = norm * normScale;
  return scaled < 255.0f ? static_cast<std::uint8_t>(scaled) : std::uint8_t{255};
}

void IkSimilarity::CoordQueryLength(int queryLength) {
  coordTable = queryLength != 0 ? standardCoordTable : nullCoordTable;
}

}  // namespace vandrelle
