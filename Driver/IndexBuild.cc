#include "Driver/IndexBuild.h"

#include <signal.h>
#include <sys/resource.h>

#include <iostream>
#include <new>

#include "Document/DcDocumentManager.h"
#include "Document/DcFieldParser.h"
#include "Document/DcManager.h"
#include "Document/DcUserTypes.h"
#include "Driver/DocumentIndex.h"
#include "Driver/OpenFile.h"
#include "Driver/SidePasses.h"
#include "Exception.h"
#include "Index/IkFamily.h"
#include "Index/IkIndex.h"
#include "Token.h"
#include "Token/TkStemmer.h"
#include "Tool/SysTools.h"
#include "Tool/Timer.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

constexpr int kSuffixLength = 20;
constexpr float kProgressStep = 0.1f;
constexpr std::size_t kPreflightBytes = 2000000;

// Logs a line as log entry, then as progress.
void logBoth(const std::string& text) {
  LOG(2, 1, text);
  LOG(1, 1, text);
}

}  // namespace

bool raiseDescriptorLimit() {
  rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return false;
  limit.rlim_cur = limit.rlim_max;
  return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

void ignoreFileSizeSignal() { ::signal(SIGXFSZ, SIG_IGN); }

IndexBuild::IndexBuild(const std::string& root, Timer* timer)
    : timer_(timer), root_(root), rootname_(kSuffixLength) {
  rootname_.base(root_.c_str());
}

void requireFinished(const std::string& root) {
  if (SysTools::fileExists((root + kIkUnfinished).c_str())) {
    THROW(Fatal, "the index " << root << " is unfinished: the run that builds it was cut short, "
                              << "or is still at work");
  }
}

IndexBuild::~IndexBuild() { VandrelleLog::Logger(nullptr); }

void IndexBuild::openLogs(const char* logname, const char* progname) {
  logger_ = std::make_unique<VymLogIostream>(&std::cerr);
  openOutputFile(logname != nullptr ? logname : rootname_.suffix(".log"), logfile_);
  openOutputFile(progname != nullptr ? progname : rootname_.suffix(".prog"), progfile_);
  logger_->stream(2, &logfile_);
  logger_->stream(1, &progfile_);
  logger_->stream(0, &logfile_);
  VandrelleLog::Logger(logger_.get());
  openOutputFile(rootname_.suffix(".size"), sizefile_);
}

void IndexBuild::makeTools(const char* stem, const char* stop, bool positions) {
  // Documents are always read through the null stemmer: the index holds words as
  // they stand. The real one serves summaries and the unstemming table.
  stemmer_.reset(TkManager::NullStemmer());
  makeRealStemmer(stem, stop);
  indexer_.reset(IkIndex::index(root_.c_str()));
  indexer_->showProgress(kProgressStep);
  indexer_->recordProximity(positions ? 1 : 0);
}

void IndexBuild::makeRealStemmer(const char* stem, const char* stop) {
  // Tables that the user names must be there, and so must the installed one where
  // only the other is named. Where none is named and none is installed, the words can
  // be indexed all the same.
  const bool installed = SysTools::fileExists(kTkDefaultStemTable) &&
                         SysTools::fileExists((std::string(kTkDefaultStopTable) + ".key").c_str());
  if (stem == nullptr && stop == nullptr && !installed) {
    LOG(0, 0,
        "No stem and stop tables are installed in "
            << kTkTableFolder
            << " and none are named with -stem and -stop: the unstemming table is left out");
    return;
  }
  std::unique_ptr<TkStemmerImpl> made(TkManager::NewStemmer(stem, stop));
  made->numberPolicy(0);
  realStemmer_ = std::move(made);
}

void IndexBuild::transpose() {
  std::unique_ptr<DcDocumentManager> docmgr(
      DcManager::getDocManager(root_.c_str(), stemmer_.get(), nullptr, nullptr));
  indexer_->documentManager(docmgr.get());
  indexer_->setOptions(docmgr.get());
  logBoth("Building transpose table...");
  indexer_->create_stage3();
  logBoth("Transpose table completed.");
}

void IndexBuild::resumeProgress() {
  logger_->stream(1, &progfile_);
  VandrelleLog::Logger(logger_.get());
}

void IndexBuild::compile(std::unique_ptr<DcUserTypes> types) {
  // Its header is written long before the last stage ends.
  std::ofstream(rootname_.suffix(kIkUnfinished));
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
  removeTempPositions(&rootname_);
  indexer_->create_stage3();
  timer_->stop();

  const unsigned long corpusSize = static_cast<unsigned long>(docmgr->corpusSize());
  // No file may still be bound when the closing passes rewrite and remove some.
  types.reset();
  indexer_.reset();
  docmgr.reset();
  fieldParser.reset();
  closingPasses(docs);
  SysTools::removeFile(rootname_.suffix(kIkUnfinished));
  closingStatistics(docs, corpusSize);
}

void IndexBuild::testMemory() {
  void* block = ::operator new(kPreflightBytes, std::nothrow);
  if (block == nullptr) THROW(Fatal, "Couldn't allocate enough memory to index.");
  ::operator delete(block);
}

void IndexBuild::testDisk(long corpusSize) {
  // Kilobytes, whatever the message says; its bracket stays open.
  const long needed = corpusSize / 5 * 2;
  if (!SysTools::freeSpace(root_.c_str(), static_cast<int>(needed))) {
    THROW(Fatal,
          "Not enough space left on device to build the index.  (" << needed << " bytes needed.");
  }
}

// Documents without a single word make no index.
void IndexBuild::compileWords(int docs) {
  indexer_->create_stage12(0, 0);
  if (!SysTools::fileExists(rootname_.suffix(".info"))) {
    THROW(Fatal, "No words found in any of " << docs << " documents - no index built.");
  }
}

void IndexBuild::closingPasses(int docs) {
  LOG(2, 1, "Building fast field index...");
  if (CREATE_FAST_FILES(&rootname_) == 0) THROW(Fatal, "Error creating fast field index.");
  if (!realStemmer_) return;  // told in the log at the start
  LOG(2, 1, "Building unstemming table...");
  if (CREATE_UNSTEM_INDEX(&rootname_, realStemmer_.get(), docs) == 0) {
    THROW(Fatal, "Error creating unstemming table.");
  }
}

void IndexBuild::closingStatistics(int docs, unsigned long corpusSize) {
  for (const int type : {2, 1}) {
    LOG(type, 1, "--------------------------------");
    LOG(type, 1,
        "Indexing Completed.  Total Docs: " << docs << ", Total Size: " << corpusSize << "K");
    LOG(type, 1, "Elapsed time: " << timer_ << '\n');
  }
}

}  // namespace vandrelle
