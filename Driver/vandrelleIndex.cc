// The command vandrelleIndex: turns a root name and a set of documents into the
// file family of an index, always from scratch, in one fixed line of stages.
//
// A run that fails by a throw says so in one line on standard output and still
// exits with 0: callers read the output. Files written until then stay.

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <string>

#include "Document/DcDocumentManager.h"
#include "Document/DcFieldParser.h"
#include "Document/DcManager.h"
#include "Driver/DocumentIndex.h"
#include "Driver/DriverOptions.h"
#include "Driver/SidePasses.h"
#include "Driver/VymLogIostream.h"
#include "Driver/VymTypes.h"
#include "Exception.h"
#include "Fun/FdWrapper.h"
#include "Index/IkIndex.h"
#include "Token.h"
#include "Token/TkStemmer.h"
#include "Tool/CommandLine.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"
#include "Tool/Timer.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

constexpr int kSuffixLength = 20;
constexpr int kSummarySize = 400;
constexpr float kProgressStep = 0.1f;
constexpr std::size_t kPreflightBytes = 2000000;
constexpr const char* kDefaultStemTable = "/Vandrelle/table/stem.tbl";
constexpr const char* kDefaultStopKeys = "/Vandrelle/table/stop.key";

void reportDescriptorProblem() {
  std::cout << "VANDRELLEERROR: Problem raising descriptor limit.\n";
  LOG(0, 0, "Problem raising descriptor limit.");
}

void increaseDescriptorLimit() {
  rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
    reportDescriptorProblem();
    return;
  }
  if (limit.rlim_cur < limit.rlim_max) limit.rlim_cur = limit.rlim_max;
  if (setrlimit(RLIMIT_NOFILE, &limit) != 0) reportDescriptorProblem();
}

// Logs a line as log entry, then as progress.
void logBoth(const std::string& text) {
  LOG(2, 1, text);
  LOG(1, 1, text);
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
  void openLogs();
  void makeTools();
  void makeRealStemmer();
  int transposeOnly();
  int buildIndex();
  void listDocuments(DcUserTypes* types);
  void testMemory();
  void testDisk(long corpusSize);
  void compileWords(int docs);
  void closingPasses(int docs);
  void closingStatistics(int docs, unsigned long corpusSize);
  const char* value(const char* name) { return options_.str_arg(name); }

  Timer* timer_;
  CommandLine options_;
  std::ifstream defaultArgs_;  // the configuration file, open until the end
  std::unique_ptr<FdSStream> restArgs_;
  int summaryMode_ = 0;
  std::string root_;
  NameManager rootname_{kSuffixLength};
  std::unique_ptr<VymLogIostream> logger_;
  std::ofstream logfile_;
  std::ofstream progfile_;
  std::ofstream sizefile_;
  std::unique_ptr<TkStemmer> stemmer_;
  std::unique_ptr<TkStemmer> realStemmer_;
  std::unique_ptr<IkIndex> indexer_;
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
  openLogs();
  makeTools();
  return options_.exist_arg("transpose") ? transposeOnly() : buildIndex();
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
  std::ofstream pidfile(path);
  if (!pidfile) THROW(Fatal, "Could not open " << path << "for writing.");
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
  rootname_.base(root_.c_str());
  return true;
}

void Run::openLogs() {
  logger_ = std::make_unique<VymLogIostream>(&std::cerr);
  const char* logname = value("log");
  logfile_.open(logname != nullptr ? logname : rootname_.suffix(".log"));
  const char* progname = value("progress");
  progfile_.open(progname != nullptr ? progname : rootname_.suffix(".prog"));
  logger_->stream(2, &logfile_);
  logger_->stream(1, &progfile_);
  logger_->stream(0, &logfile_);
  VandrelleLog::Logger(logger_.get());
  sizefile_.open(rootname_.suffix(".size"));
}

void Run::makeTools() {
  // Documents are always read through the null stemmer: the index holds words as
  // they stand. The real one serves summaries and the unstemming table.
  stemmer_.reset(TkManager::NullStemmer());
  makeRealStemmer();
  indexer_.reset(IkIndex::index(root_.c_str()));
  indexer_->showProgress(kProgressStep);
  indexer_->recordProximity(0);
}

void Run::makeRealStemmer() {
  const char* stem = value("stemmer");
  const char* stop = value("stopper");
  // Tables that the user names must be there. Where none is named and none is
  // installed, the words can be indexed all the same.
  if ((stem == nullptr && !SysTools::fileExists(kDefaultStemTable)) ||
      (stop == nullptr && !SysTools::fileExists(kDefaultStopKeys))) {
    LOG(0, 0,
        "No stem and stop tables are installed in /Vandrelle/table and none are named with -stem "
        "and -stop: the unstemming table is left out");
    return;
  }
  std::unique_ptr<TkStemmerImpl> made(TkManager::NewStemmer(stem, stop));
  made->numberPolicy(0);
  realStemmer_ = std::move(made);
}

int Run::transposeOnly() {
  std::unique_ptr<DcDocumentManager> docmgr(
      DcManager::getDocManager(root_.c_str(), stemmer_.get(), nullptr, nullptr));
  indexer_->documentManager(docmgr.get());
  indexer_->setOptions(docmgr.get());
  logBoth("Building transpose table...");
  indexer_->create_stage3();
  logBoth("Transpose table completed.");
  return 0;
}

int Run::buildIndex() {
  auto types = std::make_unique<VymTypes>(root_.c_str(), options_.exist_arg("htmlcomments"));
  listDocuments(types.get());
  LOG(2, 1, "Building index...");
  std::unique_ptr<DcFieldParser> fieldParser(FIELD_PARSER());
  std::unique_ptr<DcDocumentManager> docmgr(
      DcManager::getDocManager(root_.c_str(), stemmer_.get(), fieldParser.get(), types.get()));
  const long corpusKilobytes = docmgr->corpusSize();
  sizefile_ << corpusKilobytes;
  sizefile_.close();
  indexer_->documentManager(docmgr.get());
  indexer_->setOptions(docmgr.get());
  testMemory();
  testDisk(corpusKilobytes);

  const int docs = docmgr->numDocuments();
  compileWords(docs);
  removeTempFiles(&rootname_);
  indexer_->create_stage3();
  timer_->stop();

  const unsigned long corpusSize = static_cast<unsigned long>(docmgr->corpusSize());
  // No file may still be bound when the closing passes rewrite and remove some.
  types.reset();
  indexer_.reset();
  docmgr.reset();
  fieldParser.reset();
  closingPasses(docs);
  closingStatistics(docs, corpusSize);
  return 0;
}

void Run::listDocuments(DcUserTypes* types) {
  buildDocumentIndex(&rootname_, restArgs_.get(), value("exclude"), value("filelist"),
                     value("userlist"), value("spider"), modeMaskOf(options_), summaryMode_,
                     options_.int_arg("sumsent"), logger_.get(), value("summaryroot"),
                     value("mapfile"), realStemmer_.get(), types);
  // The list stage has muted progress.
  logger_->stream(1, &progfile_);
  VandrelleLog::Logger(logger_.get());
}

void Run::testMemory() {
  void* block = ::operator new(kPreflightBytes, std::nothrow);
  if (block == nullptr) THROW(Fatal, "Couldn't allocate enough memory to index.");
  ::operator delete(block);
}

void Run::testDisk(long corpusSize) {
  // Kilobytes, whatever the message says; its bracket stays open.
  const long needed = corpusSize / 5 * 2;
  if (!SysTools::freeSpace(root_.c_str(), static_cast<int>(needed))) {
    THROW(Fatal,
          "Not enough space left on device to build the index.  (" << needed << " bytes needed.");
  }
}

// Documents without a single word make no index. The one of an earlier run must
// not pass for it, nor for that of a run which is cut short, so what makes it
// readable goes first.
void Run::compileWords(int docs) {
  SysTools::removeFile(rootname_.suffix(".info"));
  indexer_->create_stage12(0, 0);
  if (!SysTools::fileExists(rootname_.suffix(".info"))) {
    THROW(Fatal, "No words found in any of " << docs << " documents - no index built.");
  }
}

void Run::closingPasses(int docs) {
  LOG(2, 1, "Building fast field index...");
  if (CREATE_FAST_FILES(&rootname_) == 0) THROW(Fatal, "Error creating fast field index.");
  if (!realStemmer_) return;  // told in the log at the start
  LOG(2, 1, "Building unstemming table...");
  if (CREATE_UNSTEM_INDEX(&rootname_, realStemmer_.get(), docs) == 0) {
    THROW(Fatal, "Error creating unstemming table.");
  }
}

void Run::closingStatistics(int docs, unsigned long corpusSize) {
  for (const int type : {2, 1}) {
    LOG(type, 1, "--------------------------------");
    LOG(type, 1,
        "Indexing Completed.  Total Docs: " << docs << ", Total Size: " << corpusSize << "K");
    LOG(type, 1, "Elapsed time: " << timer_ << '\n');
  }
}

int guardedMain(int argc, char** argv) {
  // Writing past a file size limit is to fail like a full disk, not to kill.
  ::signal(SIGXFSZ, SIG_IGN);
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    std::unique_ptr<Timer> timer(Timer::Create());
    timer->reset();
    timer->start();
    Run run(timer.get());
    const int status = run.run(argc, argv);
    VandrelleLog::Logger(nullptr);
    return status;
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
