#include "Index/IkDataTempMerger.h"

#include <unistd.h>

#include <climits>
#include <cstdint>

#include "Index/IkException.h"
#include "Index/IkIndexer.h"
#include "Index/IkMergeIndex.h"
#include "Index/IkMergeTempfile.h"
#include "Index/IkMerger.h"

namespace vandrelle {

IkDataTempMerger::IkDataTempMerger(const char* rootname) : IkCreatorImpl(rootname) {}

IkDataTempMerger::~IkDataTempMerger() = default;

void IkDataTempMerger::addIndex(const char* rootname) {
  auto index = std::make_unique<IkMergeIndex>(rootname, nullptr, recordProximity_);
  if (std::int64_t{info_.totalNumChunks} + index->info().totalNumChunks >= INT_MAX) {
    THROW(Ik, "The documents of the merged indexes are too many");
  }
  info_.totalNumChunks += index->info().totalNumChunks;
  info_.numDeletedChunks += index->info().numDeletedChunks;
  objectList_.push_back(std::move(index));
}

void IkDataTempMerger::addTempFile(const char* srcfile) {
  if (access(srcfile, R_OK) != 0) return;
  std::string prox;
  if (recordProximity_) prox = IkProxfileName(srcfile);
  objectList_.push_back(
      std::make_unique<IkMergeTempfile>(srcfile, recordProximity_ ? prox.c_str() : nullptr));
}

void IkDataTempMerger::makeIndex() {
  IkMerger merger(static_cast<int>(objectList_.size()));
  for (std::size_t i = 0; i < objectList_.size(); ++i) {
    merger.mergeObject(static_cast<int>(i), objectList_[i].release());
  }
  objectList_.clear();
  compileIndex(&name_, &merger);
  info_.write(name_.suffix(".info"));
}

void IkDataTempMerger::addTerm(const WmWord*, int, int) {
  THROW(Fatal, "IkDataTempMerger::addTerm(const WmWord*, int, int) "
                   << "is unimplemented");
}

}  // namespace vandrelle
