// Merges finished indexes into one. In additive mode they hold different
// documents: the chunks of each follow those of the one before. Otherwise they
// hold different words of the same documents.
#pragma once

#include <memory>
#include <vector>

#include "Index/IkCreatorImpl.h"
#include "Index/IkMergeDeleter.h"
#include "Index/IkMergeIndex.h"

namespace vandrelle {

class IkDataMerger : public IkCreatorImpl {
 public:
  explicit IkDataMerger(const char* rootname);
  ~IkDataMerger() override;

  // To be set before the first addIndex(). The excluder isn't owned.
  void additiveMode(bool additive) { additiveMode_ = additive; }
  void excluder(IkMergeIndexExcluder* excluder) { excluder_ = excluder; }

  // `newWordNumbersFile` (see IkMergeIndex.h) and `deleter` may be null; the
  // deleter isn't owned.
  void addIndex(const char* rootname, const char* newWordNumbersFile, IkMergeDeleter* deleter);
  int numIndexes() const { return static_cast<int>(indexList_.size()); }

  void makeIndex() override;

  // Throws _Exception_Ik: words come from the indexes.
  void addTerm(const WmWord* word, int chunk, int pos) override;

 private:
  std::vector<std::unique_ptr<IkMergeIndex>> indexList_;
  bool additiveMode_ = false;
  int currentOffset_ = 0;
  IkMergeIndexExcluder* excluder_ = nullptr;
};

}  // namespace vandrelle
