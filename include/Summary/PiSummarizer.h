// Extracts: the sentences of a text that stand for it best, by its own vocabulary.
// The sentences are indexed as a small index of their own, gathered into one
// group, and those nearest to the group's vector are chosen.
//
// Nothing is thrown: a failure is a line on the error stream and a result of 0.
// What it came from goes to the log, or to the error stream as well without one.
#pragma once

namespace vandrelle {

class DcSentenceManager;
class IkIndexBinder;
class PrNodeCreator;
class PrParser;
class QlGatherResult;
class TkLexer;
class TkStemmer;

class PiSummarizer {
 public:
  // At most `maxsents` sentences of `text` (ended with a zero), in their order
  // there, joined: a new array that the caller owns, or null. With `maxsize` above
  // 0 the sentence that passes so many characters is cut between words and ends
  // in "...", and none follows it.
  //
  // `sentences`, which may be null, has room for `maxsents` pointers. It receives
  // the chosen sentences, as new arrays that the caller owns, then null pointers.
  //
  // `sntroot` is the root name of the work index. Its files are gone afterwards,
  // and so are former files of its names. It isn't used for a text of no more than
  // `maxsents` sentences. With `clean` not zero PiSummaryClean has a say.
  //
  // A null stemmer stands for that of the installed tables, a null lexer for that
  // of plain text. Neither is owned.
  static char* summarize(const char* text, char** sentences, int maxsize, int maxsents,
                         const char* sntroot, int clean, TkStemmer* pstemmer, TkLexer* plexer);

  // Chooses at most `maxsents` of the `sumsents` documents of `sntmgr` and puts
  // their numbers, rising, into `sntarray`, which has room for `maxsents` and is
  // filled up with -1. How many were chosen; 0 after a failure. Leaves no files.
  static int getSentenceIds(DcSentenceManager* sntmgr, const char* sntroot, int* sntarray,
                            int maxsents, int sumsents, int clean);

  // Builds the index of the manager's documents at `sntroot`, with digests but
  // without norms and positions: it is there to gather, not to search. The caller
  // owns the binder, which goes before the manager, and removes the files when it
  // is gone. Null, and no files, after a failure.
  static IkIndexBinder* makeSummaryBinder(DcSentenceManager* sntmgr, const char* sntroot);
  // Removes the files of the index of sentences at `sntroot`, and no others.
  static void removeSummaryFiles(const char* sntroot);

  // Documents 0 to `sumsents` - 1 of the index as one group, and more if they have
  // nothing in common. A new result, owned by the caller; null after a failure.
  static QlGatherResult* getGather(IkIndexBinder* sntbinder, int sumsents);

  // What getGather() does, in the query language of makeParser().
  static constexpr char kQuery[] = "(g m=iavg g=1 trunc=5 fid=50 gv=64 (. 0-1000))";
  // A new parser with the keywords "g", for an operator that gathers, and ".", for
  // one that makes bit vectors. The caller owns the parser; the operators stay
  // owned as they were and must outlive it.
  static PrParser* makeParser(PrNodeCreator* gcreator, PrNodeCreator* bvcreator);

  // The beginning of `sent`, which is longer than `available`, and "...": a new
  // array that the caller owns. It ends at the last white space within 10
  // characters before `available`, or there if the word is longer.
  static char* AddEllipsis(const char* sent, int available);
};

}  // namespace vandrelle
