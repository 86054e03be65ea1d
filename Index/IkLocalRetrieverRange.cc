// The loop for queries of few rows: documents are scored range by range, and in a
// range row by row, into buckets that stay in cache.
#include <algorithm>
#include <cmath>
#include <limits>

#include "Index/IkLocalRetriever.h"
#include "Parser/PrSparseNodeImpl.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr int kMinDocsFromRow = 2000;
constexpr int kEnoughMatches = 300;
constexpr int kLastSerialNum = 65534;

// The bit of a mask that no document has: there are fewer rows.
constexpr uint32 kNoRow = 1u << 31;

// The most that one row can add to a document, without its scale: a word counts for a
// tenth of a document at most.
const float MAX_CONTRIB = static_cast<float>(std::sqrt(0.1));

int toInt(float number) {
  constexpr float kLimit = 2147483648.0f;
  if (!(number > -kLimit)) return std::numeric_limits<int>::min();
  return number < kLimit ? static_cast<int>(number) : std::numeric_limits<int>::max();
}

}  // namespace

void IkLocalRetriever::computeResultSimpleVirtual(IkRetrieverInput* input,
                                                  PrSparseNodeImpl* result) {
  sortUnpackerList();
  const int n = static_cast<int>(sortedRows_.size());
  RangeScan scan;
  boundRows(scan);
  // Only now: the bounds are made with the table of the query before.
  sim_.CoordQueryLength(similarityScaling_ == 2 ? query_.querySize() : 0);

  int minFromRow[kMaxRows] = {};
  int totalFromRow[kMaxRows] = {};
  for (int i = 0; i < n; ++i) {
    const float idf = sortedRows_[static_cast<std::size_t>(i)].unpacker.idf();
    const float wanted = static_cast<float>(sim_.InverseIDF(idf)) * rowFraction_;
    minFromRow[i] = std::max(toInt(wanted), kMinDocsFromRow);
  }
  bindMasks(*input);
  const int documents = info_->totalNumChunks;
  const int end = maxDocs_ > 0 && maxDocs_ <= documents ? maxDocs_ : documents;

  for (int base = 0; base < end;) {
    const int max = base + std::min(scoreBucketsLength_, end - base);
    clearScoreBuckets();
    bool done = true;
    for (int i = 0; i < n; ++i) {
      IkUnpackerExtra& row = sortedRows_[static_cast<std::size_t>(i)];
      if (!row.unpacker.more()) continue;
      const uint32 mask = 1u << (row.num & 31);
      totalFromRow[i] += i < scan.iterateRange
                             ? scoreDocRange<true>(base, max, row.scale, row.unpacker, mask)
                             : scoreDocRange<false>(base, max, row.scale, row.unpacker, mask);
      if (totalFromRow[i] < minFromRow[i]) done = false;
    }
    collectRange(base, scan, result);
    if (done && scan.count > kEnoughMatches) {
      // The rest of the collection is taken to be like what was read.
      scan.count = base > 0 ? toInt(static_cast<float>(scan.count) *
                                    (static_cast<float>(documents) / static_cast<float>(base)))
                            : documents;
      break;
    }
    base = max;
  }
  adjustResult(result);
  if (input->matches() == 0) input->matches(scan.count);
}

// What the rows from i on can add to a document. The scale of one row stands for all of
// them, deliberately; behind the last row it is 0.
void IkLocalRetriever::boundRows(RangeScan& scan) {
  const int n = static_cast<int>(sortedRows_.size());
  scan.iterateRange = n;
  for (int i = 1; i <= n; ++i) {
    const float scale = i < n ? sortedRows_[static_cast<std::size_t>(i)].scale : 0.0f;
    float sum = 0;
    for (int j = 0; j < i; ++j) sum += scale * MAX_CONTRIB;
    scan.inclusiveMaxPossible[n - i] = sim_.Coord(sum, i);
  }
}

// Takes the documents of the range that match. As the lowest score of the result rises,
// rows that can't reach it without the others cease to open buckets.
void IkLocalRetriever::collectRange(int base, RangeScan& scan, PrSparseNodeImpl* result) {
  const IkRetrieverBooleanMask* const masks = masks_.data();
  const int numMasks = static_cast<int>(masks_.size());
  for (const ScoreBucket* bucket = firstBucket_; bucket != nullptr; bucket = bucket->next_) {
    if (!matchMultipleMasks(bucket->mask_, masks, numMasks)) continue;
    const float score = sim_.Coord(bucket->score_, bucket->termCount_);
    const int doc = base + static_cast<int>(bucket - scoreBuckets_.get());
    if (!(score > 0) || !isLive(doc)) continue;
    if (score >= scan.min) {
      result->add(doc, score);
      if (result->min() != scan.min) {
        scan.min = result->min();
        while (scan.iterateRange > 1 &&
               scan.inclusiveMaxPossible[scan.iterateRange - 1] < scan.min) {
          --scan.iterateRange;
        }
      }
    }
    ++scan.count;
  }
}

// By falling weight; equal rows stay as they were.
bool IkLocalRetriever::UnpackerListSortFunction(const IkUnpackerExtra& a,
                                                const IkUnpackerExtra& b) {
  return a.scale != b.scale ? a.scale > b.scale : a.num < b.num;
}

void IkLocalRetriever::sortUnpackerList() {
  sortedRows_.clear();
  for (int row = 0; row < query_.numUnpackers(); ++row) {
    sortedRows_.push_back({query_.unpackTable[static_cast<std::size_t>(row)], 0.0f, row});
  }
  for (const IkQueryInfo& info : query_.queryInfo) {
    const float scale = info.value * info.idf;
    if (info.offset >= 0) sortedRows_[static_cast<std::size_t>(info.offset)].scale = scale;
    if (info.components == nullptr) continue;
    for (const int* row = info.components.get(); *row >= 0; ++row) {
      sortedRows_[static_cast<std::size_t>(*row)].scale = scale;
    }
  }
  std::sort(sortedRows_.begin(), sortedRows_.end(), UnpackerListSortFunction);
}

// The masks of the operations, with the bits of rows in the place of those of terms. A
// term without a row has no part in the operations, and its bit is left out; or it is
// one without a word, which no document has.
void IkLocalRetriever::bindMasks(IkRetrieverInput& input) {
  masks_.clear();
  if (query_.numOperations() == 0) return;
  IkRetrieverBooleanMask* made = nullptr;
  int numMasks = 0;
  IkCreateMasks(input, made, numMasks);
  const HeapArray<IkRetrieverBooleanMask> masks(made);
  for (int i = 0; i < numMasks; ++i) {
    IkRetrieverBooleanMask rows;
    int bit = 0;
    for (const IkRetrieverQuery::Term& term : query_.terms) {
      if (term.data->elem != nullptr || term.data->virt) continue;
      if (term.row >= 0) {
        rows.require_ |= (masks[i].require_ >> bit & 1) << term.row;
        rows.disallow_ |= (masks[i].disallow_ >> bit & 1) << term.row;
      } else if (term.slot >= 0 && (masks[i].require_ >> bit & 1) != 0) {
        rows.require_ |= kNoRow;
      }
      ++bit;
    }
    masks_.push_back(rows);
  }
}

// A bucket counts as empty while it has another serial number than the range; only
// when the numbers start over are they wiped.
void IkLocalRetriever::clearScoreBuckets() {
  if (serialNum_ > kLastSerialNum) serialNum_ = 0;
  if (serialNum_ == 0) {
    for (int i = 0; i < scoreBucketsLength_; ++i) scoreBuckets_[i].serialNum_ = 0;
  }
  firstBucket_ = nullptr;
  ++serialNum_;
}

// Adds the row's documents below `max` to their buckets; without considerNewDocs only
// to those that another row has opened. Answers the steps made.
template <bool considerNewDocs>
int IkLocalRetriever::scoreDocRange(int base, int max, float scale, IkUnpacker& unpacker,
                                    uint32 mask) {
  ScoreBucket* const buckets = scoreBuckets_.get();
  const unsigned char* const norms = normfile_;
  const std::uint16_t serialNum = serialNum_;
  ScoreBucket* first = firstBucket_;
  IkUnpacker row = unpacker;
  int steps = 0;
  while (row.docNum() < max) {
    const int doc = row.docNum();
    ScoreBucket& bucket = buckets[doc - base];
    const auto freq = static_cast<std::uint16_t>(row.docFreq());
    if (bucket.serialNum_ == serialNum) {
      ++bucket.termCount_;
      bucket.score_ += sim_.NormalizedTF(freq, norms[doc]) * scale;
      bucket.mask_ |= mask;
    } else if (considerNewDocs) {
      bucket.termCount_ = 1;
      bucket.serialNum_ = serialNum;
      bucket.score_ = sim_.NormalizedTF(freq, norms[doc]) * scale;
      bucket.mask_ = mask;
      bucket.next_ = first;
      first = &bucket;
    }
    row.read();
    if (!row.more()) break;
    ++steps;
  }
  firstBucket_ = first;
  unpacker = row;
  return steps;
}

bool IkLocalRetriever::matchMultipleMasks(uint32 matches, const IkRetrieverBooleanMask* masks,
                                          int numMasks) {
  const auto fits = [matches](const IkRetrieverBooleanMask& mask) {
    return (matches & mask.require_) == mask.require_ && (matches & mask.disallow_) == 0;
  };
  switch (numMasks) {
    case 0:
      return true;
    case 1:
      return fits(masks[0]);
    case 2:
      return fits(masks[0]) || fits(masks[1]);
    case 3:
      return fits(masks[0]) || fits(masks[1]) || fits(masks[2]);
    default:
      for (int i = 0; i < numMasks; ++i) {
        if (fits(masks[i])) return true;
      }
      return false;
  }
}

}  // namespace vandrelle
