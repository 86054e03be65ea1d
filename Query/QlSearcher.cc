#include "Query/QlSearcher.h"

#include <algorithm>

#include "Document/DcDocumentManager.h"
#include "Document/DcFieldsBinder.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkLocalRetriever.h"
#include "Index/IkTranspose.h"
#include "Index/IkWordTable.h"
#include "Parser/PrManager.h"
#include "Parser/PrNodeCreator.h"
#include "Parser/PrParser.h"
#include "Parser/PrSparseNodeImpl.h"
#include "Query/QlFindCreator.h"
#include "Query/QlGather.h"
#include "Query/QlGatherIterated.h"
#include "Query/QlGatherResult.h"
#include "Storage/StFileStorage.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {
namespace {

constexpr const char* kNoWords = "the query has no words to look for";
constexpr int kCachedDigests = 10000;
constexpr const char* kZeroByte = "the query holds a zero byte";
const std::string kTooManyWords =
    "the query has more than " + std::to_string(QlWords::kMaxWords) + " words";

std::vector<QlHit> bestOf(PrSparseReadonly& list) {
  list.sortByScore();
  std::vector<QlHit> hits;
  for (int i = 0; i < list.numTuples() && list.docScore(i) > 0; ++i) {
    hits.push_back({list.docNum(i), list.docScore(i)});
  }
  return hits;
}

}  // namespace

QlSearcher::QlSearcher(const char* root, TkStemmer* stemmer, DcDocumentManager* documents)
    : binder_(std::make_unique<IkLocalIndexBinder>(root, documents)),
      documents_(documents),
      stemmer_(stemmer) {
  // Mapped, unless they have outgrown one file: a query reads a few rows and digests,
  // from anywhere.
  const NameManager name(root);
  const std::string digests = name.suffix(".trp");
  const bool mapped =
      StFileStorage::IsOneFile(digests.c_str()) || !SysTools::fileExists(digests.c_str());
  binder_->transposeCacheSize(mapped ? 0 : kCachedDigests);
  const IkIndexInfo& info = *binder_->info();
  if (info.numTerms > 0) {
    binder_->keyfile(1);
    binder_->indexData(0, StFileStorage::IsOneFile(name.suffix(".dat")));
    binder_->localRetriever()->similarityScaling(2);
  }
  fields_ = std::make_unique<DcFieldsBinder>(root);
  words_ = std::make_unique<QlWordSearch>(binder_.get(), stemmer, fields_.get());
  phrase_ = std::make_unique<QlPhrase>(binder_.get());
}

QlSearcher::~QlSearcher() = default;

bool QlSearcher::fail(const std::string& problem) {
  problem_ = problem;
  return false;
}

void QlSearcher::startQuestion(QlAnswer& answer) {
  problem_.clear();
  answer = QlAnswer();
  words_->forget();
  phrase_->forget();
}

bool QlSearcher::ask(const std::string& text, int count, QlAnswer& answer) {
  startQuestion(answer);
  if (text.find('\0') != std::string::npos) return fail(kZeroByte);
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin != std::string::npos && text[begin] == '(') {
    return askExpression(text.substr(begin), count, answer);
  }
  QlWords words(stemmer_);
  if (!words.addText(text, 1.0f)) {
    return fail(kTooManyWords);
  }
  return askWords(words, count, answer);
}

bool QlSearcher::askPhrase(const std::string& text, int count, QlAnswer& answer) {
  startQuestion(answer);
  if (text.find('\0') != std::string::npos) return fail(kZeroByte);
  const std::vector<WmMagicWord> words = QlWords::cut(text);
  if (words.empty()) return fail(kNoWords);
  if (words.size() > QlWords::kMaxWords) return fail(kTooManyWords);
  if (!binder_->hasPositions()) return fail(kNoPositions);
  for (const PrTuple& found : phrase_->retrieve(words, count, &answer.matches)) {
    answer.hits.push_back({found.doc, found.score});
  }
  return true;
}

bool QlSearcher::askWords(const QlWords& words, int count, QlAnswer& answer) {
  if (words.empty()) return fail(kNoWords);
  if (binder_->info()->numTerms == 0) return true;
  answer.hits = bestOf(*words_->retrieve(words, count, &answer.matches));
  return true;
}

void QlSearcher::bindKeywords() {
  parser_.reset(PrManager::Parser());
  const int documents = numDocuments();
  const auto bind = [&](const char* keyword, PrNodeCreator* creator) {
    operators_.emplace_back(creator);
    parser_->AddKeyword(keyword, creator);
  };
  bind("find", new QlFindCreator(words_.get()));
  bind("and", PrManager::AndCreator());
  bind("or", PrManager::OrCreator());
  bind("not", PrManager::NotCreator(documents));
  bind("max", PrManager::MaxCreator(documents));
  bind("sparse", PrManager::SparseCreator());
  bind("range", PrManager::RangeCreator());
  bind("bits", PrManager::BitVectorCreator(documents));
  bind("augment", PrManager::AugmentCreator());
  bind("words", PrManager::WordCreator());
  bind(".", PrManager::BitVectorCreator(documents));
  bind("g", QlGather::GatherIterCentroidCreator(binder_.get()));
}

bool QlSearcher::askExpression(const std::string& text, int count, QlAnswer& answer) {
  if (parser_ == nullptr) bindKeywords();
  PrArgStruct result;
  if (!parser_->Parse(&result, text.c_str())) return false;
  bool answered = true;
  if (result.type == PrArgStruct::kNode) {
    collect(result.node, count, answer);
  } else if (result.type == QlGatherCreator::kGroups) {
    answer.groups = static_cast<QlGatherResult*>(result.object);
    for (int group = 0; group < answer.groups->numGroups(); ++group) {
      answer.matches += answer.groups->numDocs(group);
    }
  } else {
    answered = fail("the query makes words, not documents; put them into (find ...)");
  }
  result.deleteObject();
  return answered;
}

void QlSearcher::collect(PrParserNode* node, int count, QlAnswer& answer) {
  const int documents = numDocuments();
  PrSparseNodeImpl best(std::min(count, documents));
  // Not every node has an end of its own.
  node->forEach([&](int document, float score) {
    if (document >= documents) return false;
    if (score > 0) {
      best.add(document, score);
      ++answer.matches;
    }
    return true;
  });
  answer.hits = bestOf(best);
}

QlAnswer QlSearcher::similar(int document, int count) {
  QlAnswer answer;
  // One more: the document itself is the most similar.
  const std::unique_ptr<PrSparseReadonly> found(static_cast<PrSparseReadonly*>(
      binder_->transpose()->similar(document, std::min(count, numDocuments()) + 1)));
  for (const QlHit& hit : bestOf(*found)) {
    if (hit.document != document && static_cast<int>(answer.hits.size()) < count) {
      answer.hits.push_back(hit);
    }
  }
  answer.matches = static_cast<int>(answer.hits.size());
  return answer;
}

std::vector<QlWeightedWord> QlSearcher::importantWords(int document, int count) {
  struct Release {
    void operator()(IkTransposeWords* words) const { ::operator delete(words); }
  };
  const std::unique_ptr<IkTransposeWords, Release> digest(
      binder_->transpose()->allWords(document, nullptr));
  std::vector<QlWeightedWord> words;
  // By falling score; an entry that isn't in use has none, and the rest haven't either.
  for (int i = 0; i < digest->numWords() && digest->word_score(i) > 0; ++i) {
    if (static_cast<int>(words.size()) == count) break;
    const WmWord* word = binder_->wordTable()->word(digest->word_num(i));
    if (word == nullptr || isStopWord(*word)) continue;
    words.push_back({std::string(word->letters(), static_cast<std::size_t>(word->num_letters())),
                     digest->word_score(i)});
  }
  return words;
}

std::unique_ptr<QlGatherResult> QlSearcher::gather(const std::vector<QlHit>& hits, int groups) {
  std::vector<int> documents;
  for (const QlHit& hit : hits) documents.push_back(hit.document);
  QlGatherIterated gather(binder_.get(), new QlGatherAvg(binder_.get()));
  gather.numGroups(groups);
  return std::unique_ptr<QlGatherResult>(
      gather.gather(documents.data(), static_cast<int>(documents.size())));
}

QlPage QlSearcher::page(int document) {
  QlPage page;
  if (fields_->valid()) {
    const auto field = [&](const char* name) {
      const std::unique_ptr<char[]> value(fields_->retrieve(document, name));
      return std::string(value != nullptr ? value.get() : "");
    };
    page = {field("title"), field("url"), field("summary")};
  }
  if (page.address.empty() && documents_ != nullptr) {
    const std::unique_ptr<char[]> name(documents_->numToName(document));
    if (name != nullptr) page.address = name.get();
  }
  return page;
}

}  // namespace vandrelle
