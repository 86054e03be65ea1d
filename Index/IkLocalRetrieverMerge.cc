// The loop for any query: all rows are merged, document by document.
#include <algorithm>

#include "Index/IkBooleanOperations.h"
#include "Index/IkLocalRetriever.h"
#include "Parser/PrSparseNodeImpl.h"

namespace vandrelle {

namespace {

constexpr uint32 kNoDoc = 0xFFFFFFFFu;
// Rows listed at a document, the end of the list included; with more the list is
// given up.
constexpr int kMaxListSize = 10;
constexpr int kCachedFrequencies = 4;
// Scores don't tell higher sums of frequencies apart.
constexpr int kMaxSummedFrequency = 1 << 20;
// More bits aren't worth a map from slots to rows.
constexpr long long kMaxMapBits = 1 << 20;

// The lowest of `count` numbers, in four runs that don't wait for each other.
uint32 lowest(const uint32* numbers, std::size_t count) {
  uint32 low[4] = {kNoDoc, kNoDoc, kNoDoc, kNoDoc};
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    low[0] = std::min(low[0], numbers[i]);
    low[1] = std::min(low[1], numbers[i + 1]);
    low[2] = std::min(low[2], numbers[i + 2]);
    low[3] = std::min(low[3], numbers[i + 3]);
  }
  for (; i < count; ++i) low[0] = std::min(low[0], numbers[i]);
  return std::min(std::min(low[0], low[1]), std::min(low[2], low[3]));
}

}  // namespace

void IkLocalRetriever::computeResultNormal(IkRetrieverInput* input, PrSparseNodeImpl* result) {
  const int querySize = query_.querySize();
  truth_.assign(static_cast<std::size_t>(querySize), 0);
  opstack_.assign(static_cast<std::size_t>(query_.numOperations()) + 4, 0);
  rowDocs_.clear();
  for (const IkUnpacker& row : query_.unpackTable) {
    rowDocs_.push_back(row.more() ? static_cast<uint32>(row.docNum()) : kNoDoc);
  }
  makeVirtualMap();
  scoreCache_.init(query_.queryInfo.data(), querySize, kCachedFrequencies, &sim_);
  sim_.CoordQueryLength(similarityScaling_ == 2 ? querySize : 0);
  if (maxDocs_ < 1) maxDocs_ = info_->totalNumChunks;

  int constraintDoc = -1;
  float constraintScore = 0;
  float minScore = 0;
  int matches = 0;
  for (int doc = findNextDoc(); doc >= 0 && doc <= maxDocs_; doc = findNextDoc()) {
    if (!query_.composites.empty()) {
      if (rowListValid_ && virtmap_ != nullptr) {
        calculateVirtualTerms();
      } else {
        calculateVirtualTerms(doc);
      }
    }
    if (query_.numOperations() != 0 && !matchesQuery(doc)) {
      advanceMatching(doc);
      continue;
    }
    if (constraint_ != nullptr) {
      if (!nextConstraint(doc, constraintDoc, constraintScore)) break;
      if (doc < constraintDoc) {
        advanceMatching(doc);
        continue;
      }
    }
    float score = 0;
    int count = 0;
    docScore(doc, score, count);
    advanceMatching(doc);
    score *= sim_.normDecoder[normfile_[doc]];
    if (score < 0) score = 0;
    if (constraint_ != nullptr) score *= constraintScore;
    score = sim_.Coord(score, count);
    if (!(score > 0) || !isLive(doc)) continue;
    if (score > minScore) {
      result->add(doc, score);
      minScore = result->min();
    }
    ++matches;
  }
  adjustResult(result);
  input->matches(matches);
}

void IkLocalRetriever::makeVirtualMap() {
  virtmap_.reset();
  const long long bits = static_cast<long long>(query_.querySize()) * query_.numUnpackers();
  if (query_.composites.empty() || bits > kMaxMapBits) return;
  virtmap_ = std::make_unique<IkBitArray2D>(query_.querySize(), query_.numUnpackers());
  for (const int slot : query_.composites) {
    const int* row = query_.queryInfo[static_cast<std::size_t>(slot)].components.get();
    for (; *row >= 0; ++row) virtmap_->bit(slot, *row, 1);
  }
}

// The next document of any row, -1 at the end of all, with the list of the rows that
// stand at it.
int IkLocalRetriever::findNextDoc() {
  const uint32 doc = lowest(rowDocs_.data(), rowDocs_.size());
  rowList_.clear();  // keeps its room
  rowListValid_ = true;
  if (doc == kNoDoc) return -1;
  const uint32* const rowDocs = rowDocs_.data();
  const auto rows = static_cast<int>(rowDocs_.size());
  for (int row = 0; row < rows; ++row) {
    if (rowDocs[row] != doc) continue;
    if (rowList_.size() == kMaxListSize - 1) {
      rowListValid_ = false;
      break;
    }
    rowList_.push_back(row);
  }
  return static_cast<int>(doc);
}

inline void IkLocalRetriever::stepRow(int row) {
  IkUnpacker& unpacker = query_.unpackTable[static_cast<std::size_t>(row)];
  unpacker.read();
  rowDocs_[static_cast<std::size_t>(row)] =
      unpacker.more() ? static_cast<uint32>(unpacker.docNum()) : kNoDoc;
}

void IkLocalRetriever::advanceMatching(int doc) {
  if (rowListValid_) {
    for (const int row : rowList_) stepRow(row);
    return;
  }
  for (std::size_t row = 0; row < rowDocs_.size(); ++row) {
    if (rowDocs_[row] == static_cast<uint32>(doc)) stepRow(static_cast<int>(row));
  }
}

void IkLocalRetriever::calculateVirtualTerms(int doc) {
  for (const int slot : query_.composites) {
    IkQueryInfo& info = query_.queryInfo[static_cast<std::size_t>(slot)];
    info.freq = 0;
    for (const int* row = info.components.get(); *row >= 0; ++row) {
      const auto place = static_cast<std::size_t>(*row);
      if (rowDocs_[place] != static_cast<uint32>(doc)) continue;
      info.freq = std::min(info.freq + query_.unpackTable[place].docFreq(), kMaxSummedFrequency);
    }
  }
}

void IkLocalRetriever::calculateVirtualTerms() {
  int freqs[kMaxListSize];
  const std::size_t listed = rowList_.size();
  const int* const rows = rowList_.data();
  for (std::size_t i = 0; i < listed; ++i) {
    freqs[i] = query_.unpackTable[static_cast<std::size_t>(rows[i])].docFreq();
  }
  for (const int slot : query_.composites) {
    int freq = 0;
    for (std::size_t i = 0; i < listed; ++i) {
      if (virtmap_->bit(slot, rows[i])) freq += freqs[i];
    }
    query_.queryInfo[static_cast<std::size_t>(slot)].freq = freq;
  }
}

bool IkLocalRetriever::matchesQuery(int doc) {
  for (std::size_t slot = 0; slot < query_.queryInfo.size(); ++slot) {
    const IkQueryInfo& info = query_.queryInfo[slot];
    const bool there = info.components != nullptr
                           ? info.freq > 0
                           : info.offset >= 0 && rowDocs_[static_cast<std::size_t>(info.offset)] ==
                                                     static_cast<uint32>(doc);
    truth_[slot] = there ? 1 : 0;
  }
  return IkRunOperations(
      query_.ops.data(), query_.numOperations(), opstack_.data(),
      [this](int slot) { return slot >= 0 && truth_[static_cast<std::size_t>(slot)] != 0; });
}

void IkLocalRetriever::docScore(int doc, float& score, int& count) {
  const unsigned char norm = normfile_[doc];
  const uint32* const rowDocs = rowDocs_.data();
  const IkQueryInfo* info = query_.queryInfo.data();
  const int querySize = query_.querySize();
  float sum = 0;
  int matched = 0;
  for (int slot = 0; slot < querySize; ++slot, ++info) {
    int freq = info->freq;
    if (info->offset >= 0) {
      if (rowDocs[info->offset] != static_cast<uint32>(doc)) continue;
      freq = info->unpacker->docFreq();
    } else if (freq == 0) {
      continue;
    }
    if (info->value > 0 && freq > 0) ++matched;
    sum += scoreCache_.product(slot, freq, norm);
  }
  score = sum;
  count = matched;
}

}  // namespace vandrelle
