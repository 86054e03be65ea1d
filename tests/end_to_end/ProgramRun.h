// Runs the built programs as a user would, and gives tests what they share.
#pragma once

#include <cstdlib>
#include <map>
#include <sstream>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "Document/DcFieldsBinder.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkWordTable.h"
#include "TestFiles.h"
#include "Tool/HeapText.h"
#include "Word.h"

namespace vandrelle::test {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

// The options that name the stem and stop tables of the build.
inline const std::vector<std::string> kTables{"-stem", VANDRELLE_BIN_DIR "/../table/stem.tbl",
                                              "-stop", VANDRELLE_BIN_DIR "/../table/stop"};

inline std::vector<std::string> operator+(std::vector<std::string> first,
                                          const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

inline std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

// The contents of all files whose paths begin with `root`, by suffix.
inline std::map<std::string, std::string> filesOf(const std::string& root) {
  std::map<std::string, std::string> files;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(root).parent_path())) {
    const std::string name = entry.path();
    if (name.compare(0, root.size(), root) == 0) files[name.substr(root.size())] = fileBytes(name);
  }
  return files;
}

// What differs from run to run.
inline std::map<std::string, std::string> withoutLogs(std::map<std::string, std::string> files) {
  for (const char* suffix : {".log", ".prog", ".size"}) files.erase(suffix);
  return files;
}

// Is `word` one of the index's?
inline bool holds(const std::string& root, const std::string& word) {
  IkLocalIndexBinder index(root.c_str(), nullptr);
  return index.wordTable()->wordNum(WmLocalWord(word.c_str()).word()) >= 0;
}

// A field of each document of the index, in order.
inline std::vector<std::string> fieldsOf(const std::string& root, const char* name) {
  DcFieldsBinder binder(root.c_str());
  std::vector<std::string> values;
  for (int i = 0; i < binder.numDocuments(); ++i) {
    const HeapAptr<char> value(binder.retrieve(i, name));
    values.push_back(value == nullptr ? "(null)" : value.get());
  }
  return values;
}

struct ProgramRun {
  int status = -1;  // exit status; -1 when the program did not end by itself
  int signal = 0;   // that ended it; a program that hangs ends by SIGALRM
  std::string output;
  std::string errors;
};

// Runs `program` of the build with the file `input` as standard input, at most 30
// seconds, with its two streams caught in `scratch` and VANDRELLE_CONFIG set to
// `configuration`.
inline ProgramRun run(const TestDirectory& scratch, const std::string& program,
                      const std::vector<std::string>& arguments,
                      const std::string& configuration = "/nonexistent",
                      const std::string& input = "/dev/null") {
  const std::string path = VANDRELLE_BIN_DIR "/" + program;
  const std::string output = scratch / "stdout";
  const std::string errors = scratch / "stderr";
  const pid_t child = fork();
  if (child == 0) {
    // A throw abandons what it jumps over, so leaks of a failed run are no news;
    // what the sanitizers do find must not look like an exit of the program's own.
    setenv("ASAN_OPTIONS", "detect_leaks=0:exitcode=99", 1);
    setenv("UBSAN_OPTIONS", "exitcode=99", 1);
    setenv("VANDRELLE_CONFIG", configuration.c_str(), 1);
    alarm(30);
    if (std::freopen(input.c_str(), "r", stdin) == nullptr ||
        std::freopen(output.c_str(), "w", stdout) == nullptr ||
        std::freopen(errors.c_str(), "w", stderr) == nullptr) {
      _exit(127);
    }
    std::vector<char*> argv{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments)
      argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(path.c_str(), argv.data());
    _exit(127);
  }
  int status = 0;
  ProgramRun result;
  if (child < 0 || waitpid(child, &status, 0) != child) return result;
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  result.output = fileBytes(output);
  result.errors = fileBytes(errors);
  return result;
}

}  // namespace vandrelle::test
