// A boolean expression over a few terms in disjunctive form: a document matches if
// one of the masks does, so that a test takes a few ANDs.
#pragma once

#include "Tool/ByteOrder.h"

namespace vandrelle {

class IkRetrieverInput;

struct IkRetrieverBooleanMask {
  uint32 require_ = 0;   // bits that must be set
  uint32 disallow_ = 0;  // bits that must not
};

// Makes the masks of the operations of `input`. Bit i stands for the i-th plain
// word among its terms; other terms have no bit, and read as false unless they are
// always true. `masks` is a new array of `numMasks`, which the caller owns; no masks
// for operations that nothing satisfies. Throws _Exception_Ik for more than
// kMaxMaskTerms plain words.
constexpr int kMaxMaskTerms = 12;
void IkCreateMasks(IkRetrieverInput& input, IkRetrieverBooleanMask*& masks, int& numMasks);

}  // namespace vandrelle
