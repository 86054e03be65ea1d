// Makes two values of a child's scores: one for documents above a limit, one for
// all others, documents that the child does not hold included.
#pragma once

#include <memory>

#include "Parser/PrLastAnswer.h"
#include "Parser/PrParserNode.h"

namespace vandrelle {

class PrThreshhold final : public PrParserNode {
 public:
  PrThreshhold() = default;
  PrThreshhold(float above, float below, float threshhold, int totaldocs)
      : aboveValue_(above), belowValue_(below), threshhold_(threshhold), totaldocs_(totaldocs) {}

  // With a below value the node goes on to `totaldocs`, or without end if that
  // is 0. Without a child no document is held.
  int next(int* doc, float* score) override;

  // Takes over `node`.
  void child(PrParserNode* node) {
    child_.reset(node);
    lastAnswer_.forget();
  }
  void aboveValue(float value) { set(&aboveValue_, value); }
  void belowValue(float value) { set(&belowValue_, value); }
  void threshhold(float value) { set(&threshhold_, value); }
  void totaldocs(int number) { set(&totaldocs_, number); }

 private:
  template <class T>
  void set(T* field, T value) {
    *field = value;
    lastAnswer_.forget();
  }

  int search(int* doc, float* score);
  bool pastEnd(int doc) const;
  int nextAbove(int* doc, float* score);
  int answer(int doc, float value, int* docOut, float* scoreOut);

  float aboveValue_ = 1.0f;
  float belowValue_ = 0;
  float threshhold_ = 0;
  int totaldocs_ = 0;
  std::unique_ptr<PrParserNode> child_;
  PrLastAnswer lastAnswer_;
};

}  // namespace vandrelle
