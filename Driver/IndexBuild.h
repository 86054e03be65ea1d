// What the programs that build an index do alike: logs and tools first, then, once
// the documents are listed, the line of stages from words to the closing passes.
//
//   IndexBuild build(root, timer);
//   build.openLogs(nullptr, nullptr);
//   build.makeTools(stem, stop, false);
//   ... list the documents ...
//   build.resumeProgress();
//   build.compile(std::move(types));
//
// A throw ends the build where it stands; the files written until then stay.
#pragma once

#include <fstream>
#include <memory>
#include <string>

#include "Driver/VymLogIostream.h"
#include "Tool/NameManager.h"

namespace vandrelle {

class DcUserTypes;
class IkIndex;
class TkStemmer;
class Timer;

// As many open files as the system allows. False if it refuses, which is no failure.
bool raiseDescriptorLimit();

// Throws _Exception_Fatal if the last build of `root` was cut short or is still at work.
void requireFinished(const std::string& root);

// Writing past a file size limit is to fail like a full disk, not to kill.
void ignoreFileSizeSignal();

class IndexBuild {
 public:
  // `timer`, running and not owned, gives the time in the closing lines.
  IndexBuild(const std::string& root, Timer* timer);
  ~IndexBuild();  // the process is without a log then
  IndexBuild(const IndexBuild&) = delete;
  IndexBuild& operator=(const IndexBuild&) = delete;

  // Opens <root>.log, .prog and .size, the first two under other names if such are
  // given, and makes the log that of the process. One that cannot be opened is not
  // written.
  void openLogs(const char* logname, const char* progname);

  // Stemmers and index object. `stem` and `stop` name the tables and may be null
  // for the installed ones. With `positions` the index records where words stand.
  // Throws what the tables throw.
  void makeTools(const char* stem, const char* stop, bool positions);

  // The digests alone, of an index that exists.
  void transpose();

  // After the list stage, which has muted progress.
  void resumeProgress();

  // All stages behind the list of documents. Takes `types`, which may be null,
  // since nothing may be bound in the closing passes. Throws _Exception_Fatal
  // without room or words and for a failing pass, and what the stages throw.
  void compile(std::unique_ptr<DcUserTypes> types);

  NameManager* rootname() { return &rootname_; }
  VandrelleLogIostream* logger() { return logger_.get(); }
  // For summaries and the unstemming table; null when no tables are installed.
  TkStemmer* realStemmer() { return realStemmer_.get(); }

 private:
  void makeRealStemmer(const char* stem, const char* stop);
  void testMemory();
  void testDisk(long corpusSize);
  void compileWords(int docs);
  void closingPasses(int docs);
  void closingStatistics(int docs, unsigned long corpusSize);

  Timer* timer_;
  std::string root_;
  NameManager rootname_;
  std::unique_ptr<VymLogIostream> logger_;
  std::ofstream logfile_;
  std::ofstream progfile_;
  std::ofstream sizefile_;
  std::unique_ptr<TkStemmer> stemmer_;
  std::unique_ptr<TkStemmer> realStemmer_;
  std::unique_ptr<IkIndex> indexer_;
};

}  // namespace vandrelle
