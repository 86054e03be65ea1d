#include "Index/IkDataMerger.h"

#include <climits>
#include <cstdint>

#include "Index/IkException.h"
#include "Index/IkMerger.h"

namespace vandrelle {

IkDataMerger::IkDataMerger(const char* rootname) : IkCreatorImpl(rootname) {}

IkDataMerger::~IkDataMerger() = default;

void IkDataMerger::addIndex(const char* rootname, const char* newWordNumbersFile,
                            IkMergeDeleter* deleter) {
  auto index = std::make_unique<IkMergeIndex>(rootname, newWordNumbersFile, recordProximity_);
  index->offset(currentOffset_);
  index->excluder(excluder_);
  index->deleter(deleter);
  const IkIndexInfo& source = index->info();
  if (additiveMode_) {
    if (std::int64_t{info_.totalNumChunks} + source.totalNumChunks >= INT_MAX) {
      THROW(Ik, "The documents of the merged indexes are too many");
    }
    info_.totalNumChunks += source.totalNumChunks;
    if (deleter != nullptr) info_.totalNumChunks -= deleter->numDeletedChunks();
    info_.numDeletedChunks += source.numDeletedChunks;
    currentOffset_ = info_.totalNumChunks;
  } else if (source.totalNumChunks > info_.totalNumChunks) {
    info_.totalNumChunks = source.totalNumChunks;
    info_.numDeletedChunks = source.numDeletedChunks;
  }
  indexList_.push_back(std::move(index));
}

void IkDataMerger::makeIndex() {
  IkMerger merger(numIndexes());
  for (std::size_t i = 0; i < indexList_.size(); ++i) {
    merger.mergeObject(static_cast<int>(i), indexList_[i].release());
  }
  indexList_.clear();
  compileIndex(&name_, &merger);
  info_.write(name_.suffix(".info"));
}

void IkDataMerger::addTerm(const WmWord*, int, int) {
  THROW(Ik, "IkDataMerger::addTerm(const WmWord*, int, int) is unimplemented");
}

}  // namespace vandrelle
