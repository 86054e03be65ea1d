// Compiles the stem and stop tables, and shows what they do to words.
//
//   vandrelleTable -stemsrc SOURCE -stem TABLE     compiles suffix rules
//   vandrelleTable -stopsrc SOURCE -stop TABLE     compiles stop words
//   vandrelleTable -show [-stem TABLE] [-stop TABLE] WORD...
//                                                  how words are stemmed, and why
//
// A stop table is named without .key and .ptr. Options may be combined: words are
// shown last. The exit status is 0, 1 after a line on the error stream, 2 for options
// that are wrong; a broken source leaves the former table as it was.

#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Driver/DriverOptions.h"
#include "Driver/FailureReport.h"
#include "Token.h"
#include "Token/TkSourceReader.h"
#include "Token/TkStopTable.h"
#include "Tool/CommandLine.h"

namespace vandrelle {
namespace {

constexpr const char* kUsage =
    "usage: vandrelleTable [[-stemsrc SOURCE] -stem TABLE] [[-stopsrc SOURCE] -stop TABLE] "
    "[-show WORD ...]";

FailureReport report("vandrelleTable");

using Check = bool (*)(std::istream&, TkSourceFault*);

bool isSound(const char* source, Check check) {
  std::ifstream is(source);
  if (!is) {
    report.report(std::string("cannot open ") + source);
    return false;
  }
  TkSourceFault fault;
  if (check(is, &fault)) return true;
  const std::string token = fault.token.empty() ? "" : '"' + fault.token + "\": ";
  report.report(std::string(source) + ", line " + std::to_string(fault.line) + ": " + token +
                fault.reason);
  return false;
}

bool makesSense(const CommandLine& options) {
  const bool stem = options.exist_arg("-stem");
  const bool stop = options.exist_arg("-stop");
  const bool stemSource = options.exist_arg("-stemsrc");
  const bool stopSource = options.exist_arg("-stopsrc");
  const bool show = options.exist_arg("-show");
  return (stemSource || stopSource || show) && (!stemSource || stem) && (!stopSource || stop) &&
         show == (options.numUnusedArgs() > 0);
}

void compileAndShow(const CommandLine& options) {
  const char* stem = options.str_arg("-stem");
  const char* stop = options.str_arg("-stop");
  const char* stemSource = options.str_arg("-stemsrc");
  const char* stopSource = options.str_arg("-stopsrc");
  if (stemSource != nullptr && !isSound(stemSource, TkStemTable::checkSource)) return;
  if (stopSource != nullptr && !isSound(stopSource, TkStopTable::checkSource)) return;
  if (stopSource != nullptr) TkManager::CreateStopTable(stopSource, stop);
  if (stemSource != nullptr) TkManager::CreateStemTable(stemSource, stem);
  if (!options.exist_arg("-show")) return;
  const std::unique_ptr<TkStemmerImpl> stemmer(TkManager::Stemmer(stem, stop));
  for (int i = 0; i < options.numUnusedArgs(); ++i) {
    stemmer->explain(WmLocalWord(options.unusedArg(i)).word(), std::cout);
  }
}

int run(int argc, char** argv) {
  CommandLine options;
  const std::vector<const char*> valued = {"-stem", "-stop", "-stemsrc", "-stopsrc"};
  for (const char* flag : valued) options.arg_double(flag, flag, nullptr);
  options.arg_flag("-show", "-show", nullptr);
  options.parse(argc, argv);
  const std::string fault = wrongOption(argc, argv, options, valued, 1);
  if (!fault.empty() || !makesSense(options)) {
    report.report(fault.empty() ? kUsage : fault + "; " + kUsage);
    return 2;
  }
  return runReported(report, [&] { compileAndShow(options); });
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) { return vandrelle::run(argc, argv); }
