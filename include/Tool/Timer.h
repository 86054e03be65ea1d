// Measures elapsed time in runs: start() and stop() may be repeated, and the runs
// add up.
#pragma once

#include <iosfwd>

namespace vandrelle {

class Timer {
 public:
  virtual ~Timer() = default;

  virtual void reset() = 0;
  virtual void start() = 0;
  virtual void stop() = 0;
  // The sum of the runs since reset(): whole seconds, and the milliseconds beside
  // them. The latter are not carried over, so after several runs they may exceed
  // 999.
  virtual int seconds() = 0;
  virtual int mseconds() = 0;
  // As in "12 secs, 345 msecs".
  virtual void print(std::ostream& os) = 0;

  // A UnixTimer, owned by the caller.
  static Timer* Create();
};

std::ostream& operator<<(std::ostream& os, Timer* timer);

// By the system's time of day.
class UnixTimer : public Timer {
 public:
  void reset() override;
  void start() override;
  void stop() override;
  int seconds() override;
  int mseconds() override;
  void print(std::ostream& os) override;

 private:
  struct Moment {
    long seconds = 0;
    long microseconds = 0;
  };
  static Moment now();

  Moment start_;
  Moment end_;
  Moment elapsed_;
};

}  // namespace vandrelle
