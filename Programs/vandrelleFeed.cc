// Builds an index of feeds: files that hold many articles of one layout.
//
//   vandrelleFeed -R root -type N [options] file or folder ...
//
//   -type N          the layout, 1 to 14; docs/feeds.md tells what each is
//   -prox            record where in its document each word stands
//   -flist F         take the names of files from this list, before the others
//   -stem F -stop F  the compiled tables; and -log F, -prog F, -mapfile F, -fsum, -qsum,
//                    -nss N, -sroot R: all as for vandrelleIndex
//
// The stages are those of vandrelleIndex, and so are log and index. The exit status
// is 0, 1 after one line on the error stream (no documents, no room, a damaged table),
// 2 for an option that is wrong.

#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Document/DcDataType.h"
#include "Document/DcUserTypes.h"
#include "Driver/DocumentIndex.h"
#include "Driver/DriverOptions.h"
#include "Driver/IndexBuild.h"
#include "Exception.h"
#include "Fun/FdWrapper.h"
#include "Tool/CommandLine.h"
#include "Tool/PrintableText.h"
#include "Tool/Timer.h"

namespace vandrelle {
namespace {

constexpr const char* kUsage =
    "usage: vandrelleFeed -R root -type N [-prox] [-stem F] [-stop F] [-flist F] [-mapfile F] "
    "[-fsum | -qsum] [-nss N] [-sroot R] [-log F] [-prog F] file ...";

struct Option {
  const char* name;
  const char* flag;
  const char* defaultValue = nullptr;
};

constexpr Option kValued[] = {{"root", "-R"},           {"type", "-type"},
                              {"stemmer", "-stem"},     {"stopper", "-stop"},
                              {"filelist", "-flist"},   {"mapfile", "-mapfile"},
                              {"sumsent", "-nss", "2"}, {"summaryroot", "-sroot"},
                              {"log", "-log"},          {"progress", "-prog"}};
constexpr Option kFlags[] = {{"prox", "-prox"}, {"fastsum", "-fsum"}, {"qualitysum", "-qsum"}};

bool refuse(const std::string& what) {
  std::cerr << "vandrelleFeed: " << what << '\n';
  return false;
}

// False, with a line on the error stream, for options that are wrong.
bool readOptions(int argc, char** argv, CommandLine* options, int* type) {
  if (argc < 2) return refuse(kUsage);
  std::vector<const char*> valued;
  for (const Option& option : kValued) {
    options->arg_double(option.name, option.flag, option.defaultValue);
    valued.push_back(option.flag);
  }
  for (const Option& option : kFlags) options->arg_flag(option.name, option.flag, nullptr);
  options->parse(argc, argv);

  const std::string fault = wrongOption(argc, argv, *options, valued, options->numUnusedArgs());
  if (!fault.empty()) return refuse(fault + "; " + kUsage);
  if (!options->exist_arg("root") || !options->exist_arg("type") ||
      (options->numUnusedArgs() == 0 && !options->exist_arg("filelist"))) {
    return refuse(kUsage);
  }
  if (!parseNumber(options->str_arg("type"), DcDataType::kText, DcDataType::kCrawlerToo, type)) {
    return refuse(std::string("-type takes a number from 1 to 14, not '") +
                  printable(options->str_arg("type")) + "'");
  }
  if (isCrawlerType(*type) && options->exist_arg("mapfile")) {
    return refuse("-mapfile is not for types 10 and 14, whose pages tell their addresses");
  }
  int sentences;
  if (!parseNumber(options->str_arg("sumsent"), 1, 1000000, &sentences)) {
    return refuse(std::string("-nss takes a number from 1 on, not '") +
                  printable(options->str_arg("sumsent")) + "'");
  }
  return true;
}

void buildIndex(CommandLine& options, int type) {
  const std::unique_ptr<Timer> timer(Timer::Create());
  timer->reset();
  timer->start();
  raiseDescriptorLimit();
  FdSStream names(options.unusedArgs(), 1);
  names.reset();
  IndexBuild build(options.str_arg("root"), timer.get());
  build.openLogs(options.str_arg("log"), options.str_arg("progress"));
  build.makeTools(options.str_arg("stemmer"), options.str_arg("stopper"),
                  options.exist_arg("prox"));
  buildFeedIndex(build.rootname(), type, &names, options.str_arg("filelist"),
                 {summaryModeOf(options), options.int_arg("sumsent"),
                  options.str_arg("summaryroot"), options.str_arg("mapfile"), build.realStemmer()},
                 build.logger());
  build.resumeProgress();
  build.compile(nullptr);
}

int run(int argc, char** argv) {
  ignoreFileSizeSignal();
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    CommandLine options;
    int type = 0;
    if (!readOptions(argc, argv, &options, &type)) return 2;
    buildIndex(options, type);
    return 0;
  }
  environment.restore_env();
  refuse(ExceptionManager::instance()->pop()->message());
  return 1;
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) {
  // Memory that is out ends the run as any other failure does.
  try {
    return vandrelle::run(argc, argv);
  } catch (const std::exception& failure) {
    vandrelle::refuse(failure.what());
    return 1;
  }
}
