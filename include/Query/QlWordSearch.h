// Retrieves the documents that words lead to. The words of a query become
// dimensions of the retriever's input:
//
// An index holds words as they stand in the text. A dimension of a query is a
// stem: where the unstemming table knows several words of it, they become the
// members of one virtual term ("lock", "locks", "locking"), whose frequencies add
// up; else the dimension is the word as it was typed. A stem that is named twice
// is one dimension of twice the weight.
//
// Stop words are left out, but not numbers and single letters, which a stemmer
// drops too: in a title such as "Release 15.2" they tell pages apart. A query of
// nothing but stop words is asked with all of them, each as it stands.
#pragma once

#include <memory>
#include <set>
#include <string_view>
#include <vector>

#include "MagicWord.h"

namespace vandrelle {

class DcFieldsBinder;
class IkLocalIndexBinder;
class IkRetrieverInput;
class IkUnstemmer;
class PrSparseReadonly;
class QlTitles;
class TkStemmer;

// Words with weights, on their way to a retrieval.
class QlWords {
 public:
  // More words than this are no question.
  static constexpr int kMaxWords = 1000;

  // Not owned.
  explicit QlWords(TkStemmer* stemmer) : stemmer_(stemmer) {}

  // Adds the words of a text, as cut() has them. False when there would be more than
  // kMaxWords; the rest is then left out.
  bool addText(std::string_view text, float weight);
  // The words of a text in their order, cut by the lexer for plain text as within a
  // page, up to one more than kMaxWords.
  static std::vector<WmMagicWord> cut(std::string_view text);
  bool empty() const { return asked_.empty(); }

  // The word's stem; the word itself where it is a number or a letter; invalid for
  // a stop word.
  static WmMagicWord stemOf(TkStemmer* stemmer, const WmWord& word);
  // Does the stemmer drop the word, and not because it is a number?
  static bool isStopWord(TkStemmer* stemmer, const WmWord& word);

 private:
  friend class QlWordSearch;
  struct Asked {
    WmMagicWord stem;  // the word itself for a stop word
    WmMagicWord word;
    float weight;
    bool stopped;
  };

  void add(const WmWord& word, float weight);

  TkStemmer* stemmer_;
  std::vector<Asked> asked_;  // one entry a stem, in order of appearance
  int words_ = 0;
};

class QlWordSearch {
 public:
  // Of the documents that match best in their text so many are looked at for their
  // titles, and a title of just the words of the query multiplies a score by 1 and
  // this weight.
  static constexpr int kTitleCandidates = 1000;
  static constexpr float kTitleWeight = 20.0f;

  // Owns none of them. Without fields there are no titles.
  QlWordSearch(IkLocalIndexBinder* binder, TkStemmer* stemmer, DcFieldsBinder* fields);
  ~QlWordSearch();

  // What a title may add, 0 for nothing: scores are then those of the retriever.
  void titleWeight(float weight) { titleWeight_ = weight; }

  // The `count` best documents, by falling score; all that match for `count` above
  // their number. `matches`, if not null, receives how many documents match.
  std::unique_ptr<PrSparseReadonly> retrieve(const QlWords& words, int count, int* matches);

  // Does a word of a text belong to the words retrieved by since forget()?
  bool matches(const WmWord& word) const;
  void forget() { stems_.clear(); }

  TkStemmer* stemmer() const { return stemmer_; }
  int numDocuments() const;

 private:
  void fill(const QlWords& words);
  std::vector<WmMagicWord> members(const QlWords::Asked& asked) const;
  float idfOf(const std::vector<WmMagicWord>& dimension) const;
  std::unique_ptr<PrSparseReadonly> best(const PrSparseReadonly& found, int count, int* matches);

  IkLocalIndexBinder* binder_;
  TkStemmer* stemmer_;
  IkUnstemmer* unstemmer_;                   // null for an index without an unstemming table
  std::unique_ptr<IkRetrieverInput> input_;  // of the query in hand, or the last one
  std::unique_ptr<QlTitles> titles_;
  float titleWeight_ = kTitleWeight;
  std::set<WmMagicWord> stems_;
};

}  // namespace vandrelle
