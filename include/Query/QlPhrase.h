// Finds the documents in which words stand next to each other, in the order given
// and in just these forms: stop words count like others, and no stem stands in for
// a word. The rows of the words name the documents, the positions of the words
// (IkProxBinder.h) tell those with the phrase from those with the words alone.
//
// Each row, and the positions of each word, are read once from their beginning, the
// shortest row first; what a later word must match are the places that are left.
#pragma once

#include <memory>
#include <vector>

#include "MagicWord.h"
#include "Parser/PrSparseNodeImpl.h"

namespace vandrelle {

class IkLocalIndexBinder;
class IkRetrieverInput;

class QlPhrase {
 public:
  // Not owned. The index must have positions.
  explicit QlPhrase(IkLocalIndexBinder* binder);
  ~QlPhrase();

  // The `count` best documents with the phrase, by falling score, which is that of the
  // retriever for the words of the phrase, each as often as it stands there; titles
  // don't count. `matches` receives how many documents have the phrase. Throws what
  // the readers of a damaged index throw.
  std::vector<PrTuple> retrieve(const std::vector<WmMagicWord>& words, int count, int* matches);

  // All documents with the phrase, rising.
  std::vector<int> documents(const std::vector<WmMagicWord>& words);

  // Was a word among those retrieved by since forget()?
  bool matches(const WmWord& word) const;
  void forget() { words_.clear(); }

 private:
  struct Member;
  struct Places;

  std::vector<Member> membersOf(const std::vector<WmMagicWord>& words) const;
  void seekRow(const Member& member) const;
  std::vector<int> intersect(const std::vector<Member>& members) const;
  void keepPlaces(const Member& member, bool first, Places& places) const;
  std::vector<PrTuple> ranked(const std::vector<WmMagicWord>& words, const std::vector<int>& found,
                              std::size_t count);

  IkLocalIndexBinder* binder_;
  std::vector<WmMagicWord> words_;
  // Of the retrieval in hand, or the last one.
  std::unique_ptr<PrSparseReadonly> found_;
  std::unique_ptr<IkRetrieverInput> input_;
};

}  // namespace vandrelle
