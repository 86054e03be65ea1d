#include "Parser/PrBitVector.h"

#include <algorithm>
#include <bit>

namespace vandrelle {

namespace {

constexpr unsigned kBits = 64;

std::size_t wordsFor(int size) { return (static_cast<std::size_t>(size) + kBits - 1) / kBits; }

}  // namespace

PrBitVector::PrBitVector(int size, float score)
    : bits_(wordsFor(std::max(size, 0))), size_(std::max(size, 0)), score_(score) {}

int PrBitVector::next(int* doc, float* score) {
  return lastAnswer_.next(doc, score, [this](int* d, float* s) { return search(d, s); });
}

int PrBitVector::search(int* doc, float* score) const {
  const auto start = static_cast<unsigned>(std::max(*doc, 0));
  if (start >= static_cast<unsigned>(size_)) return 0;
  std::size_t word = start / kBits;
  std::uint64_t rest = bits_[word] & (~std::uint64_t{0} << (start % kBits));
  while (rest == 0) {
    if (++word == bits_.size()) return 0;
    rest = bits_[word];
  }
  *doc = static_cast<int>(word * kBits) + std::countr_zero(rest);
  *score = score_;
  return 1;
}

void PrBitVector::set(int doc) {
  if (doc < 0 || doc >= size_) return;
  const auto bit = static_cast<unsigned>(doc);
  bits_[bit / kBits] |= std::uint64_t{1} << (bit % kBits);
  lastAnswer_.forget();
}

void PrBitVector::addRange(int first, int last) {
  first = std::max(first, 0);
  last = std::min(last, size_ - 1);
  if (first > last) return;
  lastAnswer_.forget();
  const auto begin = static_cast<unsigned>(first);
  const auto end = static_cast<unsigned>(last);
  const std::uint64_t head = ~std::uint64_t{0} << (begin % kBits);
  const std::uint64_t tail = ~std::uint64_t{0} >> (kBits - 1 - end % kBits);
  if (begin / kBits == end / kBits) {
    bits_[begin / kBits] |= head & tail;
    return;
  }
  bits_[begin / kBits] |= head;
  for (std::size_t word = begin / kBits + 1; word < end / kBits; ++word)
    bits_[word] = ~std::uint64_t{0};
  bits_[end / kBits] |= tail;
}

bool PrBitVector::get(int doc) const {
  if (doc < 0 || doc >= size_) return false;
  const auto bit = static_cast<unsigned>(doc);
  return (bits_[bit / kBits] >> (bit % kBits) & 1) != 0;
}

}  // namespace vandrelle
