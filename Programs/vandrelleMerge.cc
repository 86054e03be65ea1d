// Makes one index out of several over different documents.
//
//   vandrelleMerge -R new [-stem F] [-stop F] root root ...
//
//   -R new           root name of the new index; one of that name is replaced
//   -stem F -stop F  the compiled tables, as for vandrelleIndex; without either the new
//                    index has no unstemming table
//
// The documents keep their order, those of the second index behind those of the first,
// and so on; what vandrelleSearch answers is what it would on an index that was built
// of all of them in one run. Positions are kept if all indexes have them. The files of
// the documents are not needed.
//
// The exit status is 0, 1 after one line on the error stream (an index is missing or
// damaged, nothing can be written), 2 for an option that is wrong. A merge that fails
// leaves everything as it was.

#include <unistd.h>

#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Driver/DriverOptions.h"
#include "Driver/FailureReport.h"
#include "Driver/IndexBuild.h"
#include "Driver/IndexMerger.h"
#include "Exception.h"
#include "Token.h"
#include "Token/TkStemmer.h"
#include "Tool/CommandLine.h"

namespace vandrelle {
namespace {

constexpr const char* kUsage = "usage: vandrelleMerge -R new [-stem F] [-stop F] root root ...";

FailureReport report("vandrelleMerge");

struct Options {
  std::string root;
  std::string stem;
  std::string stop;
  std::vector<std::string> sources;
};

bool wrong(const std::string& what) {
  std::cerr << "vandrelleMerge: " << what << kUsage << '\n';
  return false;
}

// False, with a line on the error stream, for options that are wrong.
bool readOptions(int argc, char** argv, Options* options) {
  const struct {
    const char* flag;
    std::string Options::*value;
  } kValued[] = {{"-R", &Options::root}, {"-stem", &Options::stem}, {"-stop", &Options::stop}};
  CommandLine line;
  for (const auto& option : kValued) line.arg_double(option.flag, option.flag, nullptr);
  line.parse(argc, argv);
  const std::string fault =
      wrongOption(argc, argv, line, {"-R", "-stem", "-stop"}, line.numUnusedArgs());
  if (!fault.empty()) return wrong(fault + "; ");
  for (const auto& option : kValued) {
    if (line.exist_arg(option.flag)) options->*option.value = line.str_arg(option.flag);
  }
  for (int i = 0; i < line.numUnusedArgs(); ++i) {
    options->sources.push_back(line.unusedArg(i));
  }
  if (options->root.empty() || options->sources.empty()) return wrong("");
  return true;
}

const char* valueOrNull(const std::string& value) {
  return value.empty() ? nullptr : value.c_str();
}

// Set when the merge writes: what there is under its working root is its own.
bool begun = false;

// False if something in the sources was passed over, which has been told.
bool merge(const Options& options) {
  std::unique_ptr<TkStemmerImpl> stemmer;
  if (!options.stem.empty() || !options.stop.empty()) {
    stemmer.reset(TkManager::NewStemmer(valueOrNull(options.stem), valueOrNull(options.stop)));
    stemmer->numberPolicy(0);
  }
  IndexMerger merger(options.root, options.sources);
  begun = true;
  merger.build(stemmer.get());
  if (report.failures() > 0) return false;
  merger.moveIntoPlace();

  std::cout << options.sources.size() << " indexes, " << merger.documents() << " documents, "
            << merger.words() << " words\n";
  if (!stemmer) std::cout << "without -stem and -stop there is no unstemming table\n";
  if (merger.lostPositions()) std::cout << "not all indexes have positions: they are left out\n";
  if (merger.repeatedFiles() > 0) {
    std::cout << merger.repeatedFiles()
              << " files are in more than one index, and their documents in the new one as often\n";
  }
  return true;
}

int fail(const Options& options) {
  // A throw leaves files open, perhaps as many as there may be.
  ::close_range(STDERR_FILENO + 1, ~0u, 0);
  if (begun) IndexMerger::discard(options.root);
  return 1;
}

int run(const Options& options) {
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    VandrelleLog::Logger(&report);
    if (merge(options)) return std::cout.flush() ? 0 : 1;
  } else {
    environment.restore_env();
    report.report(ExceptionManager::instance()->pop()->message());
  }
  return fail(options);
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) {
  using namespace vandrelle;
  ignoreFileSizeSignal();
  raiseDescriptorLimit();  // every source holds five files or six open
  static Options options;
  if (!readOptions(argc, argv, &options)) return 2;
  try {
    return run(options);
  } catch (const std::exception& failure) {
    report.report(failure.what());
    return fail(options);
  }
}
