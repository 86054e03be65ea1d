#include "Tool/Random.h"

#include <sys/time.h>
#include <unistd.h>

#include <cstdlib>

namespace vandrelle {

int Random::seed_ = 1;

int Random::integer(int max) { return max > 0 ? static_cast<int>(random() % max) : 0; }

int Random::integer(int min, int max) {
  if (min >= max) return min;
  return static_cast<int>(random() % (static_cast<long>(max) - min + 1) + min);
}

float Random::real(float min, float max) {
  constexpr long kRange = 0x40000000;
  const double unit = static_cast<double>(random() % kRange) / kRange;
  return static_cast<float>(min + unit * (static_cast<double>(max) - min));
}

int Random::seed() { return seed_; }

void Random::seed(int seed) {
  seed_ = seed;
  srandom(static_cast<unsigned>(seed));
}

void Random::randomSeed() {
  constexpr unsigned long kSeeds = 10000000;
  timeval time;
  gettimeofday(&time, nullptr);
  const auto mixed = static_cast<unsigned long>(time.tv_sec) ^ static_cast<unsigned long>(getpid());
  seed(static_cast<int>(mixed % kSeeds));
}

}  // namespace vandrelle
