// The command vandrelleIndex: turns a root name and a set of documents into the
// file family of an index, always from scratch, in one fixed line of stages.
//
// A run that fails by a throw says so in one line on standard output and still
// exits with 0: callers read the output. Files written until then stay.

#include <unistd.h>

#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "Driver/DocumentIndex.h"
#include "Driver/DriverOptions.h"
#include "Driver/IndexBuild.h"
#include "Driver/OpenFile.h"
#include "Driver/SidePasses.h"
#include "Driver/VymTypes.h"
#include "Exception.h"
#include "Fun/FdWrapper.h"
#include "Tool/CommandLine.h"
#include "Tool/Timer.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

constexpr int kSummarySize = 400;

void increaseDescriptorLimit() {
  if (raiseDescriptorLimit()) return;
  std::cout << "VANDRELLEERROR: Problem raising descriptor limit.\n";
  LOG(0, 0, "Problem raising descriptor limit.");
}

// One run of the command: its options, its log files, its index. The members
// stand in the order in which they come to life.
class Run {
 public:
  explicit Run(Timer* timer) : timer_(timer) {}

  // The exit status.
  int run(int argc, char** argv);

 private:
  void readOptions(int argc, char** argv);
  void writePidFile();
  bool findRoot();
  void buildIndex(IndexBuild* build);
  const char* value(const char* name) { return options_.str_arg(name); }

  Timer* timer_;
  CommandLine options_;
  std::ifstream defaultArgs_;  // the configuration file, open until the end
  std::unique_ptr<FdSStream> restArgs_;
  int summaryMode_ = 0;
  std::string root_;
};

int Run::run(int argc, char** argv) {
  readOptions(argc, argv);
  writePidFile();
  if (options_.exist_arg("version")) {
    std::cout << "Ombrel v1.1P1\n";
    return 0;
  }
  if (!findRoot()) return -1;
  if (options_.exist_arg("sumfile")) {
    return CREATE_SUMMARY_FILE(root_.c_str(), kSummarySize, options_.int_arg("sumsent"));
  }
  IndexBuild build(root_, timer_);
  build.openLogs(value("log"), value("progress"));
  build.makeTools(value("stemmer"), value("stopper"), false);
  if (options_.exist_arg("transpose")) {
    build.transpose();
  } else {
    buildIndex(&build);
  }
  return 0;
}

void Run::readOptions(int argc, char** argv) {
  const std::string configuration = configurationPath(argc, argv);
  declareDriverOptions(&options_);
  increaseDescriptorLimit();
  defaultArgs_.open(configuration);
  if (defaultArgs_.good()) options_.parse(defaultArgs_);
  options_.parse(argc, argv);
  restArgs_ = std::make_unique<FdSStream>(options_.unusedArgs(), 1);
  restArgs_->reset();
  summaryMode_ = summaryModeOf(options_);
}

void Run::writePidFile() {
  const char* path = value("pidfile");
  if (path == nullptr) return;
  std::ofstream pidfile;
  if (!openOutputFile(path, pidfile)) THROW(Fatal, "Could not open " << path << "for writing.");
  pidfile << getpid();
}

bool Run::findRoot() {
  if (const char* named = value("root")) {
    root_ = named;
  } else if (restArgs_->more()) {
    root_ = restArgs_->key();
    restArgs_->next();
  } else {
    std::cout << "VANDRELLEERROR: Must specify root index filename\n";
    LOG(0, 0, "Must specify root index filename");
    return false;
  }
  return true;
}

void Run::buildIndex(IndexBuild* build) {
  auto types = std::make_unique<VymTypes>(root_.c_str(), options_.exist_arg("htmlcomments"));
  buildDocumentIndex(build->rootname(), restArgs_.get(), value("exclude"), value("filelist"),
                     value("userlist"), value("spider"), modeMaskOf(options_), summaryMode_,
                     options_.int_arg("sumsent"), build->logger(), value("summaryroot"),
                     value("mapfile"), build->realStemmer(), types.get());
  build->resumeProgress();
  build->compile(std::move(types));
}

int guardedMain(int argc, char** argv) {
  ignoreFileSizeSignal();
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    std::unique_ptr<Timer> timer(Timer::Create());
    timer->reset();
    timer->start();
    Run run(timer.get());
    return run.run(argc, argv);
  }
  environment.restore_env();
  std::cout << "VANDRELLEERROR: " << ExceptionManager::instance()->pop() << '\n';
  return 0;
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) {
  // Memory that is out ends the run as any other failure does.
  try {
    return vandrelle::guardedMain(argc, argv);
  } catch (const std::exception& failure) {
    std::cout << "VANDRELLEERROR: " << failure.what() << '\n';
    return 0;
  }
}
