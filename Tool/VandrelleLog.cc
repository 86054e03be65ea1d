#include "Tool/VandrelleLog.h"

#include <iostream>

#include "Fun/Fd.h"
#include "Tool/SysTools.h"

namespace vandrelle {

char VandrelleLogMsgBuffer[256];

VandrelleLog* VandrelleLog::logger_ = nullptr;

namespace {

FixedTextStream& messageStream() {
  static FixedTextStream stream(VandrelleLogMsgBuffer, sizeof VandrelleLogMsgBuffer);
  return stream;
}

}  // namespace

VandrelleLog::~VandrelleLog() = default;

const char* VandrelleLog::syserrstr() { return SysTools::strerror(); }

FixedTextStream& VandrelleLog::compose() {
  messageStream().rewind();
  return messageStream();
}

const char* VandrelleLog::composed() { return messageStream().text(); }

VandrelleLogIostream::VandrelleLogIostream(std::ostream* default_stream)
    : streams_(Fd::Table(16)), default_stream_(default_stream) {}

VandrelleLogIostream::~VandrelleLogIostream() { delete streams_; }

void VandrelleLogIostream::stream(int msg_type, std::ostream* os) {
  streams_->insert(&msg_type, static_cast<int>(sizeof msg_type), &os, static_cast<int>(sizeof os));
}

void VandrelleLogIostream::log(int msg_type, int, const char* msg) {
  std::ostream* os = default_stream_;
  int size = static_cast<int>(sizeof os);
  streams_->find(&msg_type, static_cast<int>(sizeof msg_type), &os, &size);
  if (os != nullptr) *os << msg << '\n' << std::flush;
}

VandrelleLogIostream* VandrelleLogIostream::Default() {
  auto* log = new VandrelleLogIostream(nullptr);
  log->stream(0, &std::cerr);
  return log;
}

}  // namespace vandrelle
