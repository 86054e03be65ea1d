// Every formula that relates counts to weights: damping of term frequencies,
// inverse document frequency, the norm of a document's length, coordination.
// The builder stores bytes made here and the retriever scores with the same
// tables, so a change of any rounding changes index files.
//
// All arithmetic is single precision, one rounding per operation in the order
// written; a logarithm is the double one of a single-precision quotient,
// rounded once. Read-only after bind() but for the coordination table.
#pragma once

#include <cstdint>

#include "Index/IkIndexInfo.h"

namespace vandrelle {

class WmWord;

class IkSimilarity {
 public:
  IkSimilarity();

  // Fills the tables for the live documents and the minimum document length of
  // `info`.
  void bind(const IkIndexInfo* info);

  // idfCache for `liveChunks` documents.
  void InitIdfCache(uint32 liveChunks);

  // ln((N + 1) / df), with N live documents: the classical idf with one added
  // to N, so that a word of every document keeps a weight.
  float IDF(int df) const {
    return static_cast<unsigned>(df) < kIdfCacheSize ? idfCache[df] : logOfQuotient(df);
  }

  // The document frequency behind an idf, rounded down after adding 0.1, which
  // takes up the rounding of a stored idf. At least -1.
  int InverseIDF(float idf) const;

  // Square root of the frequency, which counts at most up to the density limit
  // of a document with this norm byte.
  float TF(std::uint16_t freq, std::uint8_t normByte) const {
    const std::uint16_t limited = freq < tfLimits[normByte] ? freq : tfLimits[normByte];
    return limited < kTfCacheSize ? tfCache[limited] : rootOf(limited);
  }

  // TF scaled by the document's norm.
  float NormalizedTF(std::uint16_t freq, std::uint8_t normByte) const {
    return freq == 1 ? normTfCache[normByte] : TF(freq, normByte) * normDecoder[normByte];
  }
  void InitNormTfCache();

  // Adds to a document's length in characters what `tf` occurrences take, the
  // separator behind each included. The second form is given the characters of
  // one occurrence with its separator; both give the same sum.
  static void NormIncrement(float& norm, std::uint16_t tf, const WmWord* word);
  static void NormIncrement(float& norm, std::uint16_t tf, float length) {
    norm += static_cast<float>(tf) * length;
  }

  // The byte of a document of `length` characters; 0 for an empty document,
  // 255 for one of at most the minimum length.
  std::uint8_t Norm2Byte(float length) const;
  float Byte2Norm(std::uint8_t normByte) const { return normDecoder[normByte]; }

  // Selects the coordination table: the standard one for a non-zero query
  // length, else one that changes nothing.
  void CoordQueryLength(int queryLength);
  float Coord(float score, int matchedTerms) const {
    return matchedTerms < kCoordTableSize ? score * coordTable[matchedTerms] : score;
  }

  static constexpr int kTfCacheSize = 64;
  static constexpr int kIdfCacheSize = 16;
  static constexpr int kCoordTableSize = 10;
  static const float standardCoordTable[kCoordTableSize];
  static const float nullCoordTable[kCoordTableSize];

  // Read directly by the scoring loops; written by bind() only.
  float tfCache[kTfCacheSize];
  std::uint16_t tfLimits[256];    // highest useful frequency, by norm byte
  float normTfCache[256];         // NormalizedTF of a frequency of 1
  float idfCache[kIdfCacheSize];  // entry 0 is infinite
  uint32 totalNumChunks;          // live documents
  const float* coordTable;
  float minDocumentLength;
  float normScale;         // byte per unit of norm
  float normDecoder[256];  // unit of norm per byte

 private:
  float logOfQuotient(int df) const;
  static float rootOf(std::uint16_t freq);
};

}  // namespace vandrelle
