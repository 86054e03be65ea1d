// Compiles the stem and stop tables, and shows what they do to words.
//
//   vandrelleTable -stemsrc SOURCE -stem TABLE     compiles suffix rules
//   vandrelleTable -stopsrc SOURCE -stop TABLE     compiles stop words
//   vandrelleTable -show [-stem TABLE] [-stop TABLE] WORD...
//                                                  how words are stemmed, and why
//
// A stop table is named without .key and .ptr. Options may be combined: words are
// shown last. The exit status is 0, or 1 after a line on the error stream; a broken
// source leaves the former table as it was.

#include <fstream>
#include <iostream>
#include <memory>

#include "Exception.h"
#include "Token.h"
#include "Token/TkSourceReader.h"
#include "Token/TkStopTable.h"
#include "Tool/CommandLine.h"

namespace vandrelle {
namespace {

constexpr const char* kUsage =
    "usage: vandrelleTable [-stemsrc SOURCE -stem TABLE] [-stopsrc SOURCE -stop TABLE]\n"
    "       vandrelleTable -show [-stem TABLE] [-stop TABLE] WORD...\n";

using Check = bool (*)(std::istream&, TkSourceFault*);

bool isSound(const char* source, Check check) {
  std::ifstream is(source);
  if (!is) {
    std::cerr << "vandrelleTable: cannot open " << source << '\n';
    return false;
  }
  TkSourceFault fault;
  if (check(is, &fault)) return true;
  std::cerr << "vandrelleTable: " << source << ", line " << fault.line << ": ";
  if (!fault.token.empty()) std::cerr << '"' << fault.token << "\": ";
  std::cerr << fault.reason << '\n';
  return false;
}

int run(const CommandLine& options) {
  const char* stem = options.str_arg("stem");
  const char* stop = options.str_arg("stop");
  const char* stemSource = options.str_arg("stemsrc");
  const char* stopSource = options.str_arg("stopsrc");
  const bool show = options.exist_arg("show");
  const int words = options.numUnusedArgs();
  const bool nothingToDo = stemSource == nullptr && stopSource == nullptr && !show;
  if (nothingToDo || (stemSource != nullptr && stem == nullptr) ||
      (stopSource != nullptr && stop == nullptr) || show != (words > 0)) {
    std::cerr << kUsage;
    return 1;
  }
  if (stemSource != nullptr && !isSound(stemSource, TkStemTable::checkSource)) return 1;
  if (stopSource != nullptr && !isSound(stopSource, TkStopTable::checkSource)) return 1;
  if (stopSource != nullptr) TkManager::CreateStopTable(stopSource, stop);
  if (stemSource != nullptr) TkManager::CreateStemTable(stemSource, stem);
  if (!show) return 0;
  const std::unique_ptr<TkStemmerImpl> stemmer(TkManager::Stemmer(stem, stop));
  for (int i = 0; i < words; ++i) {
    stemmer->explain(WmLocalWord(options.unusedArg(i)).word(), std::cout);
  }
  return 0;
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) {
  using namespace vandrelle;
  CommandLine options;
  options.arg_double("stem", "-stem", nullptr);
  options.arg_double("stop", "-stop", nullptr);
  options.arg_double("stemsrc", "-stemsrc", nullptr);
  options.arg_double("stopsrc", "-stopsrc", nullptr);
  options.arg_flag("show", "-show", nullptr);
  options.parse(argc, argv);

  ExceptionEnvironment environment;
  if (GUARDED(environment)) return run(options);
  environment.restore_env();
  const std::unique_ptr<Exception> caught(ExceptionManager::instance()->pop());
  std::cerr << "vandrelleTable: " << caught->message() << '\n';
  return 1;
}
