// An extension as a source of the merger: the words that the main index hasn't
// got. The rows that go on from main rows come with those, see IkMergeIndex.
#pragma once

#include <memory>
#include <vector>

#include "Index/IkDataExtender.h"
#include "Index/IkMergeObject.h"

namespace vandrelle {

class IkMergeExtender : public IkMergeObject {
 public:
  // Takes `extender` over. Throws _Exception_Ik where there is none.
  explicit IkMergeExtender(IkDataExtender* extender);
  ~IkMergeExtender() override;

  void reset() override;
  const WmWord* word() override;
  int maxElements() override;
  void unpack(int* row, int rowSize, int* total_num, IkProxCreator* prox) override;
  void unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator* prox) override;

 protected:
  IkDataExtender* extender() const { return extender_.get(); }

 private:
  std::unique_ptr<IkDataExtender> extender_;
  std::vector<WmLocalWord> words_;  // in order
  std::size_t next_ = 0;
  std::vector<IkDocumentInfo> pairs_;  // of the current word, from maxElements() on
};

// The extension of an index, without the documents that are deleted there.
class IkMergeExtenderIndex : public IkMergeExtender {
 public:
  explicit IkMergeExtenderIndex(const char* rootname);
  ~IkMergeExtenderIndex() override;

 private:
  std::unique_ptr<IkDeleter> deleter_;
};

}  // namespace vandrelle
