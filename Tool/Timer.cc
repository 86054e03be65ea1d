#include "Tool/Timer.h"

#include <sys/time.h>

#include <ostream>

namespace vandrelle {

Timer* Timer::Create() { return new UnixTimer; }

std::ostream& operator<<(std::ostream& os, Timer* timer) {
  timer->print(os);
  return os;
}

UnixTimer::Moment UnixTimer::now() {
  timeval time;
  gettimeofday(&time, nullptr);
  return {static_cast<long>(time.tv_sec), static_cast<long>(time.tv_usec)};
}

void UnixTimer::reset() { start_ = end_ = elapsed_ = Moment(); }

void UnixTimer::start() { start_ = now(); }

void UnixTimer::stop() {
  end_ = now();
  elapsed_.seconds += end_.seconds - start_.seconds;
  elapsed_.microseconds += end_.microseconds - start_.microseconds;
  if (end_.microseconds < start_.microseconds) {
    elapsed_.seconds -= 1;
    elapsed_.microseconds += 1000000;
  }
}

int UnixTimer::seconds() { return static_cast<int>(elapsed_.seconds); }

int UnixTimer::mseconds() { return static_cast<int>(elapsed_.microseconds / 1000); }

void UnixTimer::print(std::ostream& os) { os << seconds() << " secs, " << mseconds() << " msecs"; }

}  // namespace vandrelle
