#include "Summary/PiSummaryClean.h"

#include <cstring>
#include <memory>

#include "Document/DcSentenceManager.h"
#include "Document/DcSimpleDocument.h"
#include "Fun/Fd.h"
#include "Tool/HeapText.h"

namespace vandrelle {

namespace {

constexpr int kBagHint = 32;  // a table of 16 buckets
constexpr int kMaxInARow = 3;
constexpr int kMaxUses = 7;
constexpr int kFewestWords = 3;
constexpr double kMaxRepetition = 2.0;

}  // namespace

void PiSummaryClean::reset() {
  total_ = unique_ = maxnum_ = same_ = 0;
  lastWord_->makeInvalid();
}

bool PiSummaryClean::cleanSentence(DcDocument* doc) {
  reset();
  const std::unique_ptr<FdStream> words(doc->words());
  if (words == nullptr) return false;
  const std::unique_ptr<FdBag> bag(Fd::Table(kBagHint));
  for (words->reset(); words->more(); words->next()) {
    if (!recordWord(static_cast<const WmWord*>(words->key()), bag.get())) return false;
  }
  return !bad();
}

bool PiSummaryClean::cleanSentence(const char* buf) {
  DcSimpleDocument doc(0, nullptr, buf, static_cast<int>(std::strlen(buf)), nullptr, stemmer_,
                       lexer_);
  return cleanSentence(&doc);
}

bool PiSummaryClean::recordWord(const WmWord* word, FdBag* bag) {
  if (*word == *lastWord_) {
    ++same_;
  } else {
    lastWord_ = WmLocalWord(*word);
    same_ = 0;
  }
  if (same_ >= kMaxInARow) return false;
  int count = 0;
  int size = sizeof count;
  bag->find(word, word->num_bytes(), &count, &size);
  const int uses = count + 1;
  bag->insert(word, word->num_bytes(), &uses, sizeof uses);
  if (count == 0) ++unique_;
  if (count == maxnum_) maxnum_ = uses;
  if (maxnum_ >= kMaxUses) return false;
  ++total_;
  return true;
}

bool PiSummaryClean::bad() const {
  return total_ < kFewestWords || static_cast<double>(total_) / unique_ > kMaxRepetition;
}

char* PiSummaryClean::clean(const char* origbuf) {
  newsummary_.clear();
  DcSentenceManager sentences(origbuf, stemmer_, lexer_, 1, 0, 0);
  const int count = sentences.numDocuments();
  for (int i = 0; i < count; ++i) {
    const std::unique_ptr<DcDocument> doc(sentences.documentNum(i));
    if (!cleanSentence(doc.get())) continue;
    const auto* sentence = static_cast<DcSimpleDocument*>(doc.get());
    AddSentence(sentence->buffer(), sentence->numCharacters());
  }
  return copyText(newsummary_.c_str());
}

void PiSummaryClean::AddSentence(const char* sentence, int size) {
  newsummary_.append(sentence, static_cast<std::size_t>(size));
}

}  // namespace vandrelle
