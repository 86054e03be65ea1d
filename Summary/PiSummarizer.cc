#include "Summary/PiSummarizer.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "Document/DcSentenceManager.h"
#include "Document/DcSimpleDocument.h"
#include "Exception.h"
#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkIndexer.h"
#include "Index/IkLocalIndexBinder.h"
#include "Parser/PrManager.h"
#include "Parser/PrParser.h"
#include "Query/QlGatherIterated.h"
#include "Query/QlGatherResult.h"
#include "Summary/PiSummaryClean.h"
#include "Token.h"
#include "Tool/HeapText.h"
#include "Tool/SysTools.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

constexpr int kGroupedSentences = 50;  // those that are compared one by one
constexpr int kCentralSentences = 5;   // those that the vector is made of
constexpr int kVectorWords = 64;
constexpr int kLongestStepBack = 10;
// Digests are made in memory, some 450 bytes a sentence.
constexpr int kMostSentences = 1 << 20;
// A throw leaves open what is open. A process that meets so many of them has a
// work place that is full, and stops trying before it has no file left.
constexpr int kMostThrows = 64;

// Runs `action`. What it throws, as text, or "". The throw runs no destructors: what is
// to be freed must live outside of `action`.
template <typename Action>
std::string caught(const Action& action) {
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    try {
      action();
    } catch (const std::exception& failure) {
      return failure.what();
    }
    return "";
  }
  environment.restore_env();
  const std::unique_ptr<Exception> thrown(ExceptionManager::instance()->pop());
  std::ostringstream text;
  text << thrown.get();
  return text.str();
}

void report(const char* text) { std::cerr << text << '\n'; }

// Tells what a failure, which is reported by itself, came from.
void logCause(const std::string& cause) {
  if (cause.empty()) return;
  if (VandrelleLog::Logger() == nullptr) {
    std::cerr << cause << '\n';
  } else {
    LOG(0, 0, "No summary: " << cause);
  }
}

// Makes the root of a work index ready. What stands against it, or "". Its first
// file is made here: where that fails nothing has been thrown, and a link that
// somebody laid in its place is not followed.
std::string claimRoot(const char* root, int sentences) {
  if (sentences > kMostSentences) return "There are too many sentences";
  if (*root == '\0') return "There is no name for the index of sentences";
  for (const char* suffix : {".lst", ".idx", ".norm", ".ver", ".unstem"}) {
    if (SysTools::fileExists((std::string(root) + suffix).c_str())) {
      return std::string("There is an index of documents at '") + root + "'";
    }
  }
  PiSummarizer::removeSummaryFiles(root);
  const std::string first = std::string(root) + ".tmp000";
  const int fd = ::open(first.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (fd < 0) return "Couldn't create '" + first + "': " + std::strerror(errno);
  ::close(fd);
  return "";
}

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool numcmp(int a, int b) { return a < b; }

// The text of one sentence, ended with a zero; empty if it can't be had.
std::string sentenceText(DcSentenceManager* sntmgr, int number) {
  const std::unique_ptr<DcDocument> doc(sntmgr->documentNum(number));
  const auto* sentence = static_cast<const DcSimpleDocument*>(doc.get());
  if (sentence == nullptr) return "";
  return std::string(sentence->buffer(), static_cast<std::size_t>(sentence->numCharacters()));
}

// Joins the chosen sentences up to `maxsize` characters, 0 for all; copies go to
// `sentences`, if given.
std::string joinSentences(DcSentenceManager* sntmgr, const std::vector<int>& chosen, int maxsize,
                          char** sentences) {
  std::string summary;
  std::size_t total = 0;  // of the whole sentences
  const std::size_t limit = static_cast<std::size_t>(maxsize);
  for (const int number : chosen) {
    if (maxsize != 0 && total >= limit) break;
    const std::string whole = sentenceText(sntmgr, number);
    const std::size_t available = limit - total;
    HeapAptr<char> kept(
        maxsize == 0 || whole.size() <= available
            ? copyText(whole.c_str())
            : PiSummarizer::AddEllipsis(whole.c_str(), static_cast<int>(available)));
    total += whole.size();
    summary += kept.get();
    if (sentences != nullptr) *sentences++ = kept.release();
  }
  return summary;
}

// The number of the group with the most documents, the first of them on a tie;
// -1 without groups.
int largestGroup(QlGatherResult* groups) {
  int largest = -1;
  for (int group = 0; group < groups->numGroups(); ++group) {
    if (largest < 0 || groups->numDocs(group) > groups->numDocs(largest)) largest = group;
  }
  return largest;
}

// Takes at most `maxsents` of the candidates in their order. How many.
int takeSentences(FdBag* candidates, DcSentenceManager* sntmgr, int* sntarray, int maxsents,
                  int clean) {
  PiSummaryClean judge(nullptr, nullptr);
  int taken = 0;
  const std::unique_ptr<FdIterator> candidate(candidates->iterator());
  for (; candidate->more() && taken < maxsents; candidate->next()) {
    if (clean != 0) {
      // The sentence judged is not the candidate but the one whose number is the
      // count so far. What is in a summary depends on it.
      const std::unique_ptr<DcDocument> judged(sntmgr->documentNum(taken));
      if (judged == nullptr || !judge.cleanSentence(judged.get())) continue;
    }
    std::memcpy(&sntarray[taken++], candidate->key(), sizeof(int));
  }
  return taken;
}

}  // namespace

char* PiSummarizer::summarize(const char* text, char** sentences, int maxsize, int maxsents,
                              const char* sntroot, int clean, TkStemmer* pstemmer,
                              TkLexer* plexer) {
  if (sentences != nullptr) std::fill_n(sentences, std::max(maxsents, 0), nullptr);
  if (text == nullptr || *text == '\0') return nullptr;
  if (maxsize < 0) {
    report("WARNING: maxsize is less than 0 - ignored");
    maxsize = 0;
  }
  std::unique_ptr<TkStemmer> ownStemmer;
  if (pstemmer == nullptr) {
    const std::string cause =
        caught([&] { ownStemmer.reset(TkManager::NewStemmer(nullptr, nullptr)); });
    if (pstemmer = ownStemmer.get(); pstemmer == nullptr) {
      report("couldn't open the stem and stop tables");
      logCause(cause);
      return nullptr;
    }
  }
  const std::unique_ptr<TkLexer> ownLexer(plexer == nullptr ? TkManager::SimpleTextLexer()
                                                            : nullptr);
  DcSentenceManager sntmgr(text, pstemmer, plexer == nullptr ? ownLexer.get() : plexer, 1, 0, 0);
  const int sumsents = sntmgr.numDocuments();
  if (sumsents == 0) {
    report("there are no sentences");
    return nullptr;
  }
  std::vector<int> chosen(static_cast<std::size_t>(std::clamp(maxsents, 0, sumsents)));
  if (maxsents >= sumsents) {
    std::iota(chosen.begin(), chosen.end(), 0);
  } else {
    const int count = getSentenceIds(&sntmgr, sntroot, chosen.data(), maxsents, sumsents, clean);
    if (count == 0) return nullptr;
    chosen.resize(static_cast<std::size_t>(count));
  }
  return copyText(joinSentences(&sntmgr, chosen, maxsize, sentences).c_str());
}

int PiSummarizer::getSentenceIds(DcSentenceManager* sntmgr, const char* sntroot, int* sntarray,
                                 int maxsents, int sumsents, int clean) {
  if (maxsents <= 0) return 0;
  std::fill_n(sntarray, maxsents, -1);
  std::unique_ptr<IkIndexBinder> sntbinder(makeSummaryBinder(sntmgr, sntroot));
  if (sntbinder == nullptr) {
    report("couldn't bind to index of sentences");
    return 0;
  }
  std::unique_ptr<FdBag> candidates;
  if (const std::unique_ptr<QlGatherResult> groups(getGather(sntbinder.get(), sumsents)); groups) {
    const int spare = clean != 0 && maxsents <= INT_MAX / 2 ? maxsents : 0;
    const std::string cause = caught([&] {
      const int group = largestGroup(groups.get());
      if (group >= 0) candidates.reset(groups->summaryDocs(group, maxsents + spare));
    });
    logCause(cause);
  }
  sntbinder.reset();
  removeSummaryFiles(sntroot);
  if (candidates == nullptr) {
    report("gather failed");
    return 0;
  }
  const int taken = takeSentences(candidates.get(), sntmgr, sntarray, maxsents, clean);
  if (taken == 0) report("no sentence is near to the others");
  std::sort(sntarray, sntarray + taken, numcmp);
  return taken;
}

IkIndexBinder* PiSummarizer::makeSummaryBinder(DcSentenceManager* sntmgr, const char* sntroot) {
  static int throws = 0;
  if (sntroot == nullptr) sntroot = "";
  std::unique_ptr<IkIndexer> indexer;
  std::unique_ptr<IkLocalIndexBinder> binder;
  std::string cause = throws < kMostThrows ? claimRoot(sntroot, sntmgr->numDocuments())
                                           : "Too many indexes of sentences have failed";
  const bool claimed = cause.empty();
  if (claimed) {
    // The log isn't to hear of every sentence.
    VandrelleLog* const log = VandrelleLog::Logger();
    VandrelleLog::Logger(nullptr);
    cause = caught([&] {
      indexer = std::make_unique<IkIndexer>(sntroot);
      indexer->recordProximity(0);
      indexer->createNormfile(0);
      indexer->addDocuments(sntmgr, 0, 0);
      indexer->makeIndex();
      if (!SysTools::fileExists((std::string(sntroot) + ".dat").c_str())) return;
      indexer->makeTranspose();
      binder = std::make_unique<IkLocalIndexBinder>(sntroot, sntmgr);
      binder->transposeCacheSize(0);
    });
    VandrelleLog::Logger(log);
    if (!cause.empty()) {
      ++throws;
      if (indexer != nullptr) indexer->discard();
    }
  }
  if (binder != nullptr) return binder.release();
  if (claimed) removeSummaryFiles(sntroot);
  report("index of sentences couldn't be built");
  logCause(cause);
  return nullptr;
}

// By their full names: another root may begin with this one.
void PiSummarizer::removeSummaryFiles(const char* sntroot) {
  const std::string root(sntroot);
  if (root.empty()) return;
  for (const char* suffix : {".info", ".key", ".ptr", ".wrd", ".dat", ".idf", ".sum", ".trp"}) {
    SysTools::removeFile((root + suffix).c_str());
  }
  for (int number = 0;; ++number) {
    char suffix[32];
    std::snprintf(suffix, sizeof suffix, ".tmp%03d", number);
    if (!SysTools::removeFile((root + suffix).c_str())) return;
  }
}

QlGatherResult* PiSummarizer::getGather(IkIndexBinder* sntbinder, int sumsents) {
  std::unique_ptr<QlGatherIterated> gather;
  std::unique_ptr<QlGatherResult> result;
  std::vector<int> docs;
  const std::string cause = caught([&] {
    const int numDocs = std::clamp(sntbinder->info()->totalNumChunks, 0, std::max(sumsents, 0));
    docs.resize(static_cast<std::size_t>(numDocs));
    std::iota(docs.begin(), docs.end(), 0);
    gather = std::make_unique<QlGatherIterated>(sntbinder, new QlGatherAvg(sntbinder));
    gather->numGroups(1);
    gather->truncatedSize(kCentralSentences);
    gather->firstIterDocuments(kGroupedSentences);
    gather->gvsize(kVectorWords);
    result.reset(gather->gather(docs.data(), numDocs));
  });
  logCause(cause);
  return result.release();
}

PrParser* PiSummarizer::makeParser(PrNodeCreator* gcreator, PrNodeCreator* bvcreator) {
  PrParser* parser = PrManager::Parser();
  parser->AddKeyword("g", gcreator);
  parser->AddKeyword(".", bvcreator);
  return parser;
}

char* PiSummarizer::AddEllipsis(const char* sent, int available) {
  int end = available;
  const int furthest = available - std::min(available, kLongestStepBack);
  while (end > furthest && !isBlank(sent[end])) --end;
  return copyText((std::string(sent, static_cast<std::size_t>(end)) + "...").c_str());
}

}  // namespace vandrelle
