#include "Query/QlWordSearch.h"

#include <algorithm>
#include <limits>

#include "Index/IkDataFileBinder.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkLocalRetriever.h"
#include "Index/IkRetrieverInput.h"
#include "Index/IkSimilarity.h"
#include "Index/IkUnstemmer.h"
#include "Index/IkWordTable.h"
#include "Parser/PrSparseNodeImpl.h"
#include "Query/QlTitles.h"
#include "Token.h"
#include "Token/CharacterClass.h"

namespace vandrelle {
namespace {

// A share of a row that no row reaches, so that the retriever doesn't stop early.
constexpr float kWholeRows = 10.0f;

// A stemmer drops these by rule and not because they say nothing.
bool isNumberOrLetter(const WmWord& word) {
  if (word.num_letters() == 1) return true;
  return std::any_of(word.letters(), word.letters() + word.num_letters(), character_class::isDigit);
}

// All that the lexer leaves of a word in letters that it doesn't know.
bool isOneEntity(const WmWord& word) {
  const char* const end = word.letters() + word.num_letters();
  return *word.letters() == '&' && std::find(word.letters(), end, ';') == end - 1;
}

}  // namespace

WmMagicWord QlWords::stemOf(TkStemmer* stemmer, const WmWord& word) {
  WmLocalWord stem;
  stemmer->stem(&word, stem.word());
  if (stem->valid()) return WmMagicWord(*stem);
  return isNumberOrLetter(word) ? WmMagicWord(word) : WmMagicWord();
}

bool QlWords::isStopWord(TkStemmer* stemmer, const WmWord& word) {
  WmLocalWord stem;
  stemmer->stem(&word, stem.word());
  return !stem->valid() && std::none_of(word.letters(), word.letters() + word.num_letters(),
                                        character_class::isDigit);
}

bool QlWords::addText(std::string_view text, float weight) {
  for (const WmMagicWord& word : cut(text)) {
    if (isOneEntity(*word)) continue;
    if (words_ == kMaxWords) return false;
    ++words_;
    add(*word, weight);
  }
  return true;
}

std::vector<WmMagicWord> QlWords::cut(std::string_view text) {
  TkPassStem asTyped;
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  // What the lexer makes of an accented letter that begins a word depends on whether
  // another word stands before it, as on nearly all places of a page.
  const std::string led = std::string("a ").append(text);
  TkMemoryStream stream(&asTyped, lexer.get(), led.data(), led.size(), true);
  std::vector<WmMagicWord> words;
  stream.reset();
  while (stream.next() != 0 && words.size() <= kMaxWords) {
    words.emplace_back(static_cast<const WmWord*>(stream.key()));
  }
  return words;
}

void QlWords::add(const WmWord& word, float weight) {
  WmMagicWord stem = stemOf(stemmer_, word);
  const bool stopped = !stem.valid();
  if (stopped) stem = word;
  const auto known = std::find_if(asked_.begin(), asked_.end(), [&](const Asked& asked) {
    return asked.stopped == stopped && asked.stem == stem;
  });
  if (known != asked_.end()) {
    known->weight += weight;
  } else {
    asked_.push_back({stem, WmMagicWord(word), weight, stopped});
  }
}

QlWordSearch::QlWordSearch(IkLocalIndexBinder* binder, TkStemmer* stemmer, DcFieldsBinder* fields)
    : binder_(binder),
      stemmer_(stemmer),
      unstemmer_(binder->hasStemTable() ? binder->unstemmer() : nullptr),
      input_(std::make_unique<IkRetrieverInput>()),
      titles_(std::make_unique<QlTitles>(fields)) {}

QlWordSearch::~QlWordSearch() = default;

int QlWordSearch::numDocuments() const { return binder_->info()->totalNumChunks; }

std::unique_ptr<PrSparseReadonly> QlWordSearch::retrieve(const QlWords& words, int count,
                                                         int* matches) {
  fill(words);
  IkLocalRetriever* const retriever = binder_->localRetriever();
  // An earlier query may have left a bound, and one that met damage its documents; and
  // rows are to be read to their ends.
  retriever->maxDocs(0);
  retriever->constraint(nullptr);
  retriever->rowFraction(kWholeRows);
  // All of them: what the titles choose from, and no bound to what is counted.
  const std::unique_ptr<PrSparseReadonly> found(
      static_cast<PrSparseReadonly*>(retriever->retrieve(input_.get(), numDocuments())));
  return best(*found, count, matches);
}

// The `count` best, after the best by text had their titles looked at.
std::unique_ptr<PrSparseReadonly> QlWordSearch::best(const PrSparseReadonly& found, int count,
                                                     int* matches) {
  std::vector<PrTuple> ranked;
  for (int i = 0; i < found.numTuples(); ++i) {
    if (found.docScore(i) > 0) ranked.push_back({found.docNum(i), found.docScore(i)});
  }
  const auto higher = [](const PrTuple& a, const PrTuple& b) {
    return a.score != b.score ? a.score > b.score : a.doc < b.doc;
  };
  const auto size = static_cast<int>(ranked.size());
  // Counted here: the retriever may have estimated.
  if (matches != nullptr) *matches = size;
  const auto sortBest = [&](int wanted) {
    std::partial_sort(ranked.begin(), ranked.begin() + std::min(wanted, size), ranked.end(),
                      higher);
  };
  if (titleWeight_ > 0) {
    const int candidates = std::min(kTitleCandidates, size);
    if (candidates < size) {
      std::nth_element(ranked.begin(), ranked.begin() + candidates, ranked.end(), higher);
    }
    for (int i = 0; i < candidates; ++i) {
      PrTuple& candidate = ranked[static_cast<std::size_t>(i)];
      candidate.score *= 1.0f + titleWeight_ * titles_->fit(candidate.doc);
    }
  }
  sortBest(count);
  const int kept = std::min(count, size);
  auto tuples = std::make_unique<PrTuple[]>(static_cast<std::size_t>(kept));
  std::copy_n(ranked.begin(), kept, tuples.get());
  auto result = std::make_unique<PrSparseReadonly>(kept, std::move(tuples));
  result->sortByScore();
  return result;
}

void QlWordSearch::fill(const QlWords& words) {
  IkRetrieverInput& input = *input_;
  input.removeAll();
  const bool onlyStopWords = std::all_of(words.asked_.begin(), words.asked_.end(),
                                         [](const auto& asked) { return asked.stopped; });
  titles_->forget();
  int dimensions = 0;
  for (const QlWords::Asked& asked : words.asked_) {
    if (asked.stopped && !onlyStopWords) continue;
    stems_.insert(asked.stem);
    const std::vector<WmMagicWord> dimension = members(asked);
    const float idf = idfOf(dimension);
    for (const WmMagicWord& word : dimension) {
      titles_->ask(*word, dimensions, asked.weight * idf);
    }
    ++dimensions;
    if (dimension.size() == 1) {
      input.add(dimension[0].word(), asked.weight);
      continue;
    }
    // The members weigh nothing by themselves: so they are one dimension, and the
    // rare ones among them may be condensed into one row.
    IkRetrieverInput::TermData* const term = input.newVirtualTerm();
    term->weight = asked.weight;
    term->idf = idf;
    for (const WmMagicWord& word : dimension) input.addVirtual(term->number, word.word(), 0.0f);
  }
}

// The words of the index behind what was asked for, at least one: the typed word
// itself where the index knows none.
std::vector<WmMagicWord> QlWordSearch::members(const QlWords::Asked& asked) const {
  std::vector<WmMagicWord> words;
  if (!asked.stopped && unstemmer_ != nullptr) {
    IkUnstemmer::Tree found;
    unstemmer_->find(*asked.stem, found, std::numeric_limits<int>::max());
    for (auto entries = found.iterator(); entries.more(); entries.next()) {
      words.push_back(entries.data().word);
    }
  }
  // The table leaves out the rarest words, of which the typed one may be one.
  if (words.empty() || (std::find(words.begin(), words.end(), asked.word) == words.end() &&
                        binder_->wordTable()->wordNum(asked.word.word()) >= 0)) {
    words.push_back(asked.word);
  }
  return words;
}

// Of the documents that hold any of the words. The sum of the words' own counts, which
// the retriever would take, counts most documents of a common concept several times:
// beyond the number of all documents its idf falls below 0, and nothing matches.
float QlWordSearch::idfOf(const std::vector<WmMagicWord>& dimension) const {
  IkDataFileBinder& rows = *binder_->indexData(0, 1);
  std::vector<bool> holds(static_cast<std::size_t>(numDocuments()));
  for (const WmMagicWord& word : dimension) {
    StStoragePos row;
    if (!binder_->wordTable()->lookup(word.word(), row)) continue;
    rows.seek(row);
    if (rows.tell() != row) continue;  // damage: there is no row
    rows.unpackPairs([&](int document, int) {
      const auto place = static_cast<std::size_t>(document);
      if (place < holds.size()) holds[place] = true;
    });
  }
  const auto documents = static_cast<int>(std::count(holds.begin(), holds.end(), true));
  return binder_->localRetriever()->Similarity().IDF(std::max(documents, 1));
}

bool QlWordSearch::matches(const WmWord& word) const {
  const WmMagicWord stem = QlWords::stemOf(stemmer_, word);
  return stems_.count(stem.valid() ? stem : WmMagicWord(word)) != 0;
}

}  // namespace vandrelle
