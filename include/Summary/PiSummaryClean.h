// Judges whether a sentence is real text, so that menus and lists of repeated
// words stay out of summaries.
#pragma once

#include <string>

#include "Word.h"

namespace vandrelle {

class DcDocument;
class FdBag;
class TkLexer;
class TkStemmer;

class PiSummaryClean {
 public:
  // Reads texts by these; owns neither.
  PiSummaryClean(TkStemmer* stemmer, TkLexer* lexer) : stemmer_(stemmer), lexer_(lexer) {}

  // Is the document one good sentence? Not for fewer than 3 words, for 4 equal
  // words in a row, for 7 uses of a word, or if the words are used more than
  // twice on an average. The second form judges a text that ends with a zero.
  bool cleanSentence(DcDocument* doc);
  bool cleanSentence(const char* buf);

  // The good sentences of a text that ends with a zero, joined, in a new array
  // that the caller owns.
  char* clean(const char* origbuf);

 private:
  void reset();
  // Counts the word in `bag`. False if the sentence is refused with it.
  bool recordWord(const WmWord* word, FdBag* bag);
  bool bad() const;
  void AddSentence(const char* sentence, int size);

  int total_ = 0;   // words
  int unique_ = 0;  // different words
  int maxnum_ = 0;  // uses of the word used most
  int same_ = 0;    // how often the last word has been repeated in a row
  WmLocalWord lastWord_;
  std::string newsummary_;
  TkStemmer* stemmer_;
  TkLexer* lexer_;
};

}  // namespace vandrelle
