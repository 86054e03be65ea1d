#include "DocumentImpl/DiZipFileHandler.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "Document/DcFileStream.h"
#include "Exception.h"
#include "Tool/SysTools.h"
#include "Tool/VandrelleLog.h"

namespace vandrelle {

namespace {

constexpr char kDecompressor[] = "/usr/local/bin/gunzip";
constexpr int kNameRoom = 128;
constexpr int kNotStarted = 127;

// The child's part. It must neither return into the copy of the run that it is
// nor flush its buffers, so its throw ends here.
[[noreturn]] void decompress(const char* path, int output) {
  // A name such as "-" is not to be taken for an option.
  const std::string named = (path[0] == '-' ? "./" : "") + std::string(path);
  const char* const file = named.c_str();
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    ::dup2(output, STDOUT_FILENO);
    if (::access(kDecompressor, X_OK) == 0) {
      ::execl(kDecompressor, kDecompressor, "-c", file, nullptr);
    } else {
      ::execlp("gunzip", "gunzip", "-c", file, nullptr);
    }
    THROW(Fatal, "exec failed in FileHandlerZip");
  }
  const char* message = ExceptionManager::instance()->pop()->message();
  ::dprintf(STDERR_FILENO, "%s\n", message);
  ::_exit(kNotStarted);
}

void waitFor(pid_t child, const char* file) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno == EINTR) continue;
    LOG(0, 0, "the decompressor of " << file << " cannot be waited for: " << SysTools::strerror());
    return;
  }
  // A log line is cut when it gets too long, which only the name can make it.
  if (WIFSIGNALED(status)) {
    LOG(0, 0, "signal " << WTERMSIG(status) << " ended the decompression of " << file);
  } else if (WEXITSTATUS(status) != 0) {
    LOG(0, 0, "status " << WEXITSTATUS(status) << " from the decompression of " << file);
  }
}

}  // namespace

DiZipFileHandler::DiZipFileHandler() : pid_(::getpid()) {}

std::string DiZipFileHandler::temporaryName(const std::ifstream* stream) const {
  char name[kNameRoom];
  std::snprintf(name, sizeof name, "/tmp/%d.%d.tmp", static_cast<int>(pid_),
                static_cast<int>(reinterpret_cast<std::intptr_t>(stream)));
  return name;
}

std::ifstream* DiZipFileHandler::Open(const char* file) {
  auto stream = std::make_unique<DcSourceStream>();
  const std::string name = temporaryName(stream.get());
  // The name can be foretold, so what stands there, link or file, is not written into.
  SysTools::removeFile(name.c_str());
  const int output = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (output < 0) THROW(Fatal, "couldn't open " << name);
  const pid_t child = ::fork();
  if (child == 0) decompress(file, output);
  if (child > 0) waitFor(child, file);
  ::close(output);
  if (child < 0) {
    SysTools::removeFile(name.c_str());
    THROW(Fatal, "fork failed");
  }
  if (!stream->open(name.c_str())) THROW(Fatal, "temp file: " << name << " not found");
  return stream.release();
}

void DiZipFileHandler::Close(std::ifstream* stream) {
  SysTools::removeFile(temporaryName(stream).c_str());
  DiBasicFileHandler::Close(stream);
}

}  // namespace vandrelle
