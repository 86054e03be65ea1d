// The process-wide log.
//
//   LOG(1, 1, "Building index of " << documents << " documents");
//
// Types: 0 error or warning, 1 progress, 2 log entry. Levels (0 anomalies, 1 stage
// lines and progress, 2 a line per document) are handed on to the writer, and the
// writers here ignore them.
#pragma once

#include <iosfwd>

#include "FixedTextStream.h"

namespace vandrelle {

class FdBag;

// Where an entry is composed; what goes beyond it is lost.
extern char VandrelleLogMsgBuffer[256];

class VandrelleLog {
 public:
  virtual ~VandrelleLog();
  virtual void log(int msg_type, int msg_level, const char* msg) = 0;

  static VandrelleLog* Logger() { return logger_; }
  // Not owned; null turns logging off.
  static void Logger(VandrelleLog* logger) { logger_ = logger; }

  // The system's text of the last failure of a system call.
  static const char* syserrstr();

  // An empty stream over VandrelleLogMsgBuffer, and the text put on it, which is
  // valid until the next compose().
  static FixedTextStream& compose();
  static const char* composed();

  static VandrelleLog* logger_;
};

// Writes each entry and a newline to the stream of its type, and flushes.
class VandrelleLogIostream : public VandrelleLog {
 public:
  // `default_stream` serves the types that were never entered; null mutes them.
  // Streams are not owned.
  explicit VandrelleLogIostream(std::ostream* default_stream);
  ~VandrelleLogIostream() override;
  VandrelleLogIostream(const VandrelleLogIostream&) = delete;
  VandrelleLogIostream& operator=(const VandrelleLogIostream&) = delete;

  // Enters or replaces the destination of a type; null mutes it, whatever the
  // default stream.
  void stream(int msg_type, std::ostream* os);

  void log(int msg_type, int msg_level, const char* msg) override;

  // A new writer, owned by the caller: errors to the standard error stream, nothing
  // else anywhere.
  static VandrelleLogIostream* Default();

 private:
  FdBag* streams_;
  std::ostream* default_stream_;
};

// Composes (`text` is a chain of << operands) and logs, if there is a log.
#define LOG(type_, level_, text_)                                                     \
  do {                                                                                \
    if (::vandrelle::VandrelleLog::logger_ != nullptr) {                              \
      ::vandrelle::VandrelleLog::compose() << text_;                                  \
      ::vandrelle::VandrelleLog::logger_->log(type_, level_,                          \
                                              ::vandrelle::VandrelleLog::composed()); \
    }                                                                                 \
  } while (false)

}  // namespace vandrelle
