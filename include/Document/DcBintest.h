// Guesses from its first 1024 bytes whether a file is binary. A type map asks
// it for rules that are to take text only.
#pragma once

#include <cstdint>

namespace vandrelle {

class DcBintest {
 public:
  static constexpr int kTextThreshold = 9900;

  explicit DcBintest(int threshold = kTextThreshold) : threshold_(threshold) {}

  // 1 for a binary file or one that cannot be opened (which is logged), else 0.
  // Never waits: a pipe without a writer is as good as empty.
  //
  // All 1024 positions of the buffer count, and it is not cleared between
  // files: what a longer file left behind is judged together with a short one
  // that follows. Which files an index holds depends on that.
  int isBin(const char* filename);

  // Hundredths of the text bytes that are needed for each byte of non-text.
  void setThresh(int threshold) { threshold_ = threshold; }

 private:
  char testbuf_[1024] = {};
  int32_t threshold_;
};

}  // namespace vandrelle
