#include "Index/IkMergeExtender.h"

#include <algorithm>

#include "Index/IkDeleterVector.h"
#include "Index/IkException.h"
#include "Index/IkExtensionUnpackers.h"

namespace vandrelle {

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

void IkMergeExtender::unpack(int* row, int rowSize, int* total_num, IkProxCreator*) {
  int offset = 0;
  if (!extender_->lookupOffset(words_[next_ - 1].word(), &offset)) return;
  IkCountingUnpacker unpacker(rowSize, row, total_num);
  extender_->seek(offset);
  extender_->unpackRow(&unpacker, extender_->scale());
}

IkMergeExtenderIndex::IkMergeExtenderIndex(const char* rootname)
    : IkMergeExtender(IkDataExtender::Bind(rootname, 0)),
      deleter_(IkDeleterVector::Bind(rootname, 0, 1)) {
  extender()->deleter(deleter_.get());
}

IkMergeExtenderIndex::~IkMergeExtenderIndex() = default;

}  // namespace vandrelle
