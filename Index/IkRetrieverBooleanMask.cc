#include "Index/IkRetrieverBooleanMask.h"

#include <bit>
#include <memory>
#include <vector>

#include "Index/IkBooleanOperations.h"
#include "Index/IkException.h"

namespace vandrelle {

namespace {

constexpr int kReadsFalse = -1;
constexpr int kReadsTrue = -2;

bool isPlain(const IkRetrieverInput::TermData& term) {
  return term.elem == nullptr && term.virt == 0 && term.alwaysTrue == 0;
}

using Masks = std::vector<IkRetrieverBooleanMask>;

// If masks i and j differ in a single bit, the same in both fields, i becomes what both
// are without it, and the last mask takes the place of j.
bool merge(Masks& masks, std::size_t i, std::size_t j) {
  const uint32 bit = masks[i].require_ ^ masks[j].require_;
  if (!std::has_single_bit(bit) || bit != (masks[i].disallow_ ^ masks[j].disallow_)) return false;
  masks[i].require_ &= ~bit;
  masks[i].disallow_ &= ~bit;
  masks[j] = masks.back();
  masks.pop_back();
  return true;
}

// Merges the first two masks that can be, over and over, while there are 3 or more. A
// merge makes a new mask at i only, so that the next pair is (h, i) for some h before
// i, or doesn't come before (i, i + 1).
void mergeMasks(Masks& masks) {
  std::size_t i = 0;
  std::size_t j = 1;
  while (masks.size() >= 3 && i + 1 < masks.size()) {
    if (j >= masks.size()) {
      ++i;
      j = i + 1;
    } else if (!merge(masks, i, j)) {
      ++j;
    } else {
      std::size_t h = 0;
      while (h < i && masks.size() >= 3) {
        if (merge(masks, h, i)) {
          i = h;
          h = 0;
        } else {
          ++h;
        }
      }
      j = i + 1;
    }
  }
}

}  // namespace

void IkCreateMasks(IkRetrieverInput& input, IkRetrieverBooleanMask*& masks, int& numMasks) {
  int numBits = 0;
  for (int i = 0; i < input.numTerms(); ++i) numBits += isPlain(*input.term(i));
  if (numBits > kMaxMaskTerms) {
    THROW(Ik, "A boolean expression over " << numBits << " words has too many for masks");
  }

  // Operands become bits.
  std::vector<int> bits;
  int nextBit = 0;
  for (int i = 0; i < input.numTerms(); ++i) {
    const IkRetrieverInput::TermData& term = *input.term(i);
    bits.push_back(isPlain(term) ? nextBit++ : term.alwaysTrue ? kReadsTrue : kReadsFalse);
  }
  std::vector<IkRetrieverInput::Operation> operations;
  for (int i = 0; i < input.numOperations(); ++i) {
    IkRetrieverInput::Operation operation = input.operation(i);
    const bool known = operation.operand >= 0 && operation.operand < input.numTerms();
    operation.operand = known ? bits[static_cast<std::size_t>(operation.operand)] : kReadsFalse;
    operations.push_back(operation);
  }

  std::vector<unsigned char> stack(operations.size() + 1);
  Masks found;
  const uint32 all = (1u << numBits) - 1;
  for (uint32 assignment = 0; assignment <= all; ++assignment) {
    const auto truth = [assignment](int bit) {
      return bit >= 0 ? (assignment >> bit & 1) != 0 : bit == kReadsTrue;
    };
    if (IkRunOperations(operations.data(), static_cast<int>(operations.size()), stack.data(),
                        truth)) {
      found.push_back({assignment, ~assignment & all});
    }
  }
  mergeMasks(found);

  auto made = std::make_unique<IkRetrieverBooleanMask[]>(found.size());
  for (std::size_t i = 0; i < found.size(); ++i) made[i] = found[i];
  numMasks = static_cast<int>(found.size());
  masks = made.release();
}

}  // namespace vandrelle
