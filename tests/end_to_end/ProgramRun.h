// Runs the built programs as a user would, and gives tests a folder of their own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace vandrelle::test {

inline std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void write(const std::filesystem::path& path, const std::string& contents) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << contents;
}

// A new folder under the system's temporary one, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vandrelle-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

struct ProgramRun {
  int status = -1;  // exit status; -1 when the program did not end by itself
  int signal = 0;   // that ended it; a program that hangs ends by SIGALRM
  std::string output;
  std::string errors;
};

// Runs `program` of the build with the file `input` as standard input, at most 30
// seconds, with its two streams caught in `scratch` and VANDRELLE_CONFIG set to
// `configuration`.
inline ProgramRun run(const TemporaryFolder& scratch, const std::string& program,
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
  result.output = contentsOf(output);
  result.errors = contentsOf(errors);
  return result;
}

}  // namespace vandrelle::test
