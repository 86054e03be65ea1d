// Asks an index.
//
//   vandrelleSearch -R root [options] word word ...     words
//   vandrelleSearch -R root [options] '(and ... )'      the query language
//   vandrelleSearch -R root [options] -phrase word ...  words next to each other
//   vandrelleSearch -R root [options] -i                a query a line from standard input
//   vandrelleSearch -R root [options] -similar N        documents like document N
//   vandrelleSearch -R root [options] -words N          the words that weigh most in it
//   vandrelleSearch -R root [options] -sum N [-nss 3]   a summary of it, made now
//
//   -n 10            at most so many results
//   -titles 20       what a title that fits the words adds to a score of 1; with 0 a score
//                    is that of the text alone, as it always is for phrases
//   -phrase          each query is a phrase: these words in this order, nothing between
//                    them, each in just this form. The index must have been built with
//                    positions
//   -gather K        the results (100, unless -n says otherwise) in K groups
//   -plain           a line a result, fields separated by tabs: rank, document number,
//                    score, address, title. Groups: the group in place of the rank.
//                    Words: rank, word, weight
//   -json            an object a line with the same and the summary, in UTF-8
//   -stem F -stop F  the compiled tables, as for vandrelleIndex
//
// With -i each answer ends with an empty line and is flushed; a query that can't be
// answered gets a line on the error stream and an empty answer.
//
// The exit status is 0, 1 after one line on the error stream (no index, no table, a
// damaged file, no query), 2 for an option that is wrong.

#include <chrono>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "Document/DcMetaDocManager.h"
#include "Driver/AnswerDisplay.h"
#include "Driver/DriverOptions.h"
#include "Driver/FailureReport.h"
#include "Driver/IndexBuild.h"
#include "Driver/VymTypes.h"
#include "Exception.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkTranspose.h"
#include "Parser/PrManager.h"
#include "Parser/PrParser.h"
#include "Query/QlGatherResult.h"
#include "Query/QlSearcher.h"
#include "Summary/PiHtmlSummarizeOperator.h"
#include "Token.h"
#include "Tool/CommandLine.h"
#include "Tool/PrintableText.h"
#include "Tool/SysTools.h"

namespace vandrelle {
namespace {

EXCEPTION_FAMILY(Search);

constexpr const char* kUsage =
    "usage: vandrelleSearch -R root [-n 10] [-plain | -json] [-titles 20] [-gather K] [-stem F] "
    "[-stop F] [-phrase] "
    "[-i | -similar N | -words N | -sum N [-nss 3] | word ... | '(expression)']";

constexpr int kResults = 10;
constexpr int kGatheredResults = 100;

using Clock = std::chrono::steady_clock;

FailureReport report("vandrelleSearch");

// ---- The options

struct Options {
  std::string root;
  std::string query;
  const char* stem = nullptr;
  const char* stop = nullptr;
  AnswerDisplay::Form form = AnswerDisplay::Form::kBlocks;
  bool interactive = false;
  bool phrase = false;
  int results = 0;
  int groups = 0;  // 0: no gathering
  int similarTo = -1;
  int wordsOf = -1;
  int summaryOf = -1;
  int sentences = 3;
  int titles = static_cast<int>(QlWordSearch::kTitleWeight);
};

// The values of one that takes a number: `least` or more.
struct NumberOption {
  const char* flag;
  int least;
  int Options::*value;
};

constexpr NumberOption kNumberOptions[] = {
    {"-n", 1, &Options::results},         {"-gather", 1, &Options::groups},
    {"-similar", 0, &Options::similarTo}, {"-words", 0, &Options::wordsOf},
    {"-sum", 0, &Options::summaryOf},     {"-nss", 1, &Options::sentences},
    {"-titles", 0, &Options::titles}};

bool refuse(const std::string& what) {
  std::cerr << "vandrelleSearch: " << what << '\n';
  return false;
}

// False, with a line on the error stream, for options that are wrong.
bool readOptions(int argc, char** argv, Options* options) {
  CommandLine line;
  std::vector<const char*> valued = {"-R", "-stem", "-stop"};
  for (const NumberOption& option : kNumberOptions) valued.push_back(option.flag);
  for (const char* flag : valued) line.arg_double(flag, flag, nullptr);
  for (const char* flag : {"-plain", "-json", "-i", "-phrase"}) line.arg_flag(flag, flag, nullptr);
  line.parse(argc, argv);

  const std::string fault = wrongOption(argc, argv, line, valued, 1);
  if (!fault.empty()) return refuse(fault + "; " + kUsage);
  for (const NumberOption& option : kNumberOptions) {
    const char* const text = line.str_arg(option.flag);
    if (text == nullptr || parseNumber(text, option.least, std::numeric_limits<int>::max(),
                                       &(options->*option.value))) {
      continue;
    }
    return refuse(std::string(option.flag) + " takes a number from " +
                  std::to_string(option.least) + " on, not '" + printable(text) + "'");
  }
  for (int i = 0; i < line.numUnusedArgs(); ++i) {
    if (i > 0) options->query += ' ';
    options->query += line.unusedArg(i);
  }

  options->interactive = line.exist_arg("-i");
  options->phrase = line.exist_arg("-phrase");
  const int asked = options->interactive + (options->similarTo >= 0) + (options->wordsOf >= 0) +
                    (options->summaryOf >= 0) + !options->query.empty();
  const bool phraseOfNothing = options->phrase && !options->interactive && options->query.empty();
  if (!line.exist_arg("-R") || asked > 1 || phraseOfNothing ||
      (line.exist_arg("-plain") && line.exist_arg("-json"))) {
    return refuse(kUsage);
  }
  options->root = line.str_arg("-R");
  if (line.exist_arg("-plain")) options->form = AnswerDisplay::Form::kPlain;
  if (line.exist_arg("-json")) options->form = AnswerDisplay::Form::kJson;
  if (options->results == 0) options->results = options->groups > 0 ? kGatheredResults : kResults;
  // The text stays that of the table of options, which goes.
  static std::string stem, stop;
  if (line.exist_arg("-stem")) options->stem = (stem = line.str_arg("-stem")).c_str();
  if (line.exist_arg("-stop")) options->stop = (stop = line.str_arg("-stop")).c_str();
  return true;
}

// ---- The questions

class Session {
 public:
  explicit Session(const Options& options)
      : options_(options),
        types_(options.root.c_str(), 0),
        stemmer_(TkManager::NewStemmer(options.stem, options.stop)),
        documents_(options.root.c_str(), &asWritten_, nullptr, &types_),
        searcher_(options.root.c_str(), stemmer_.get(), &documents_),
        display_(searcher_, options.form, options.interactive) {
    searcher_.titleWeight(static_cast<float>(options.titles));
  }

  void run();

 private:
  void requireDigest(int document);
  // False when the query can't be answered, which has then been told.
  bool ask(const std::string& query);
  bool askGuarded(const std::string& query);
  void interact();
  void summarize();

  const Options& options_;
  TkPassStem asWritten_;
  VymTypes types_;
  std::unique_ptr<TkStemmer> stemmer_;
  DcMetaDocManager documents_;
  QlSearcher searcher_;
  AnswerDisplay display_;
};

void Session::requireDigest(int document) {
  if (document >= searcher_.binder().transpose()->numDocs()) {
    THROW(Search, "the index has no digest of document " << document);
  }
}

void Session::run() {
  if (options_.phrase && !searcher_.binder().hasPositions()) {
    THROW(Search, QlSearcher::kNoPositions);
  }
  if (options_.interactive) {
    interact();
  } else if (options_.summaryOf >= 0) {
    summarize();
  } else if (options_.wordsOf >= 0) {
    requireDigest(options_.wordsOf);
    display_.words(searcher_.importantWords(options_.wordsOf, options_.results));
  } else if (options_.similarTo >= 0) {
    requireDigest(options_.similarTo);
    const auto begin = Clock::now();
    const QlAnswer answer = searcher_.similar(options_.similarTo, options_.results);
    display_.hits(answer, std::chrono::duration<double>(Clock::now() - begin).count());
  } else if (!ask(options_.query)) {
    report.failed();
  }
}

bool Session::ask(const std::string& query) {
  const auto begin = Clock::now();
  QlAnswer answer;
  if (!(options_.phrase ? searcher_.askPhrase(query, options_.results, answer)
                        : searcher_.ask(query, options_.results, answer))) {
    if (!searcher_.problem().empty()) report.report(searcher_.problem());
    return false;
  }
  std::unique_ptr<QlGatherResult> gathered;
  if (options_.groups > 0 && answer.groups == nullptr) {
    gathered = searcher_.gather(answer.hits, options_.groups);
    answer.groups = gathered.get();
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
  if (answer.groups != nullptr) {
    display_.groups(*answer.groups, answer.matches, seconds);
  } else {
    display_.hits(answer, seconds);
  }
  return true;
}

// A query that meets damage must not end the session.
bool Session::askGuarded(const std::string& query) {
  ExceptionEnvironment environment;
  if (GUARDED(environment)) return ask(query);
  environment.restore_env();
  const std::unique_ptr<Exception> failure(ExceptionManager::instance()->pop());
  report.report(failure->message());
  return false;
}

void Session::interact() {
  for (std::string query; std::getline(std::cin, query);) {
    report.reset();
    askGuarded(query);
    std::cout << std::endl;
    if (!std::cout) break;
  }
  // Each failure has been told, and answered by an empty line.
  report.reset();
}

void Session::summarize() {
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  PiHtmlSummarizeOperatorCout summary(&searcher_.binder(), &documents_, stemmer_.get(),
                                      lexer.get());
  const std::unique_ptr<PrParser> parser(PrManager::Parser());
  parser->AddKeyword("sum", &summary);
  const std::string query = "(sum " + std::to_string(options_.summaryOf) +
                            " n=" + std::to_string(options_.sentences) + ")";
  PrArgStruct result;
  if (!parser->Parse(&result, query.c_str())) report.failed();
  result.deleteObject();
}

int run(int argc, char** argv) {
  Options options;
  if (!readOptions(argc, argv, &options)) return 2;
  return runReported(report, [&] {
    requireFinished(options.root);
    if (!SysTools::fileExists((options.root + ".info").c_str())) {
      THROW(Search, "there is no index " << options.root);
    }
    Session(options).run();
  });
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) { return vandrelle::run(argc, argv); }
