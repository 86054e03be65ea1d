#include "Index/IkMergeExtender.h"

#include <algorithm>

#include "Index/IkDeleterVector.h"
#include "Index/IkException.h"
#include "Index/IkExtensionUnpackers.h"

namespace vandrelle {

namespace {

class PairCollector final : public IkDataFileUnpacker {
 public:
  explicit PairCollector(std::vector<IkDocumentInfo>* pairs) : pairs_(pairs) {}
  void action(int doc_num, int doc_freq, float) override { pairs_->push_back({doc_num, doc_freq}); }

 private:
  std::vector<IkDocumentInfo>* pairs_;
};

}  // namespace

IkMergeExtender::IkMergeExtender(IkDataExtender* extender) : extender_(extender) {
  if (extender == nullptr) {
    THROW(Ik, "Extending an existing index is unimplemented in this version of the SDK");
  }
}

IkMergeExtender::~IkMergeExtender() = default;

void IkMergeExtender::reset() {
  words_.clear();
  next_ = 0;
  WmLocalWord word;
  for (int number = 0; extender_->lookupWord(number, word.word()); ++number) {
    words_.push_back(word);
  }
  std::sort(words_.begin(), words_.end(),
            [](const WmLocalWord& a, const WmLocalWord& b) { return WmWord::cmp(*a, *b) < 0; });
}

const WmWord* IkMergeExtender::word() {
  return next_ < words_.size() ? words_[next_++].word() : nullptr;
}

int IkMergeExtender::maxElements() {
  pairs_.clear();
  int offset = 0;
  if (extender_->lookupOffset(words_[next_ - 1].word(), &offset)) {
    PairCollector collector(&pairs_);
    extender_->seek(offset);
    extender_->unpackRow(&collector, extender_->scale());
  }
  return static_cast<int>(pairs_.size());
}

void IkMergeExtender::unpack(int* row, int rowSize, int* total_num, IkProxCreator*) {
  IkCountingUnpacker counter(rowSize, row, total_num);
  for (const IkDocumentInfo& pair : pairs_) counter.action(pair.chunk, pair.frequency, 0.0f);
}

void IkMergeExtender::unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator*) {
  std::copy(pairs_.begin(), pairs_.end(), start + *total_num);
  *total_num += static_cast<int>(pairs_.size());
}

IkMergeExtenderIndex::IkMergeExtenderIndex(const char* rootname)
    : IkMergeExtender(IkDataExtender::Bind(rootname, 0)),
      deleter_(IkDeleterVector::Bind(rootname, 0, 1)) {
  extender()->deleter(deleter_.get());
}

IkMergeExtenderIndex::~IkMergeExtenderIndex() = default;

}  // namespace vandrelle
