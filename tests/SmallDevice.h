// A device that is soon full, for every folder's tests.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace vandrelle {

// While it lives, no file of the process grows beyond `bytes`.
class SmallDevice {
 public:
  explicit SmallDevice(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit small{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallDevice() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  void (*handler_)(int);
  rlimit old_;
};

}  // namespace vandrelle
