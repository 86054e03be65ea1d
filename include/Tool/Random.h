// Pseudo-random numbers from the process's one generator, random(3). Without a seed
// every run gives the same sequence.
#pragma once

namespace vandrelle {

class Random {
 public:
  // 0 to `max` - 1; 0 for a `max` below 1.
  static int integer(int max);
  // `min` to `max`, both included; `min` if it is not below `max`.
  static int integer(int min, int max);
  // `min` up to `max`.
  static float real(float min, float max);

  // The seed in use (1 at first), and a new one.
  static int seed();
  static void seed(int seed);
  // A seed from the time of day and the process number.
  static void randomSeed();

 private:
  static int seed_;
};

}  // namespace vandrelle
