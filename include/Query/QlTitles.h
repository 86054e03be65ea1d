// How well a query fits the titles of documents. Words that stand in a title say
// more about a page than those of its text, which is where the index has them
// too; so a word search raises documents by their titles.
//
// fit = coverage * precision: the share of the query, weighted by idf, that stands
// in the title, and the share of the title's words that are asked for. 1 for a title
// of just the words of the query.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vandrelle {

class DcFieldsBinder;
class WmWord;

class QlTitles {
 public:
  // Not owned; one that isn't valid() has no titles.
  explicit QlTitles(DcFieldsBinder* fields) : fields_(fields) {}

  // A new query: the words of its dimensions, one dimension after the other, each with
  // the weight of its dimension.
  void forget() { asked_.clear(); }
  void ask(const WmWord& word, int dimension, float weight);

  // Of a document's title, from 0 to 1. Titles are read once.
  float fit(int document);

 private:
  struct Asked {
    std::uint64_t word;  // a hash
    int dimension;
    float weight;
  };

  const std::vector<std::uint64_t>& wordsOf(int document);

  DcFieldsBinder* fields_;
  std::vector<Asked> asked_;
  std::vector<std::vector<std::uint64_t>> titles_;  // hashed words, by document
  std::vector<bool> read_;
};

}  // namespace vandrelle
