// An open index that can be asked: by words, in the query language, by example.
// Programs that search stand on this; they add how an answer is shown.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Query/QlGatherCreator.h"
#include "Query/QlPhrase.h"
#include "Query/QlWordSearch.h"

namespace vandrelle {

class DcDocumentManager;
class DcFieldsBinder;
class IkLocalIndexBinder;
class PrNodeCreator;
class PrParser;
class PrParserNode;
class QlGatherResult;
class TkStemmer;

struct QlHit {
  int document;
  float score;
};

struct QlWeightedWord {
  std::string word;
  float weight;
};

struct QlAnswer {
  std::vector<QlHit> hits;  // by falling score
  int matches = 0;          // documents that match, of which the best are in `hits`
  // Of a query that gathers, null for others. Good until the next query.
  QlGatherResult* groups = nullptr;
};

// What an index keeps for showing a document; empty where it keeps nothing.
struct QlPage {
  std::string title;
  std::string address;
  std::string summary;
};

class QlSearcher {
 public:
  // Opens the index `root`. Owns neither the stemmer of query words nor the document
  // manager, of which null is allowed: it has the names of documents without a
  // stored address. Throws what the readers throw for a missing or damaged index.
  QlSearcher(const char* root, TkStemmer* stemmer, DcDocumentManager* documents);
  ~QlSearcher();
  QlSearcher(const QlSearcher&) = delete;
  QlSearcher& operator=(const QlSearcher&) = delete;

  // Answers a query: words, or an expression in the query language, which begins with
  // a parenthesis. The `count` best documents are wanted. False when it is no query;
  // the reason has then been written to the error stream or is in problem().
  bool ask(const std::string& text, int count, QlAnswer& answer);
  // The documents with a phrase (see QlPhrase.h): the words of the text, whatever it
  // begins with. False, with the reason in problem(), without words and for an index
  // without positions.
  bool askPhrase(const std::string& text, int count, QlAnswer& answer);
  static constexpr const char* kNoPositions =
      "the index was built without the positions of its words, which a phrase needs";
  // Why the last question had no answer, unless the error stream tells; or empty.
  const std::string& problem() const { return problem_; }

  // The documents most like a document, without itself.
  QlAnswer similar(int document, int count);
  // The words that weigh most in a document.
  std::vector<QlWeightedWord> importantWords(int document, int count);
  // Some documents in groups; the caller owns the result.
  std::unique_ptr<QlGatherResult> gather(const std::vector<QlHit>& hits, int groups);

  // See QlWordSearch.
  void titleWeight(float weight) { words_->titleWeight(weight); }

  QlPage page(int document);
  int numDocuments() const { return words_->numDocuments(); }
  // Does a word of a text belong to the words of the last query?
  bool matches(const WmWord& word) const { return words_->matches(word) || phrase_->matches(word); }
  // One that says nothing of what a document is about.
  bool isStopWord(const WmWord& word) const { return QlWords::isStopWord(stemmer_, word); }
  IkLocalIndexBinder& binder() { return *binder_; }

 private:
  void startQuestion(QlAnswer& answer);
  bool fail(const std::string& problem);
  bool askWords(const QlWords& words, int count, QlAnswer& answer);
  bool askExpression(const std::string& text, int count, QlAnswer& answer);
  void bindKeywords();
  void collect(PrParserNode* node, int count, QlAnswer& answer);

  std::unique_ptr<IkLocalIndexBinder> binder_;
  DcDocumentManager* documents_;
  TkStemmer* stemmer_;
  std::unique_ptr<DcFieldsBinder> fields_;
  std::unique_ptr<QlWordSearch> words_;
  std::unique_ptr<QlPhrase> phrase_;
  std::vector<std::unique_ptr<PrNodeCreator>> operators_;  // those that keywords_ names
  std::unique_ptr<PrParser> parser_;                       // made for the first expression
  std::string problem_;
};

}  // namespace vandrelle
