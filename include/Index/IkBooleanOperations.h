// The stack machine for the boolean operations of a query, in postfix order.
#pragma once

#include "Index/IkRetrieverInput.h"

namespace vandrelle {

// What `count` operations make of `truth(operand)`, the truth of a term. `stack` has
// room for count + 1 values. True lies at its bottom: without operations everything
// matches, and an AND or OR that lacks an operand meets it or does nothing.
template <typename Truth>
bool IkRunOperations(const IkRetrieverInput::Operation* operations, int count, unsigned char* stack,
                     Truth&& truth) {
  int depth = 0;
  stack[0] = 1;
  for (int i = 0; i < count; ++i) {
    switch (operations[i].type) {
      case IkRetrieverInput::kPushTrue:
        stack[++depth] = 1;
        break;
      case IkRetrieverInput::kPushTerm:
        stack[++depth] = truth(operations[i].operand) ? 1 : 0;
        break;
      case IkRetrieverInput::kAnd:
        if (depth == 0) break;
        --depth;
        stack[depth] = stack[depth] & stack[depth + 1];
        break;
      case IkRetrieverInput::kOr:
        if (depth == 0) break;
        --depth;
        stack[depth] = stack[depth] | stack[depth + 1];
        break;
      case IkRetrieverInput::kNot:
        stack[depth] = stack[depth] ^ 1;
        break;
      default:
        break;
    }
  }
  return stack[depth] != 0;
}

}  // namespace vandrelle
