#include <algorithm>
#include <cstring>
#include <ostream>

#include "Token/TkStemTable.h"

namespace vandrelle {

namespace {

// Where things stand in a rule's bytes; the bits of its last byte but two.
constexpr int kNumReplace = 6, kReplace = 7, kBits = 9;
constexpr int kAppendShift = 6, kCont = 1 << 5, kIntact = 1 << 4, kIgnoreSize = 1 << 3, kNoBits = 7;

}  // namespace

bool TkStemRule::isSound(const unsigned char* from) {
  const unsigned char* end = std::find(from, from + kMaxSuffix, 0);
  const int bits = from[kBits];
  return std::count(end, from + kMaxSuffix, 0) == from + kMaxSuffix - end &&
         bits >> kAppendShift <= kMaxAppend && (bits & kNoBits) == 0 && from[kBits + 1] == 0 &&
         from[kBits + 2] == 0;
}

void TkStemRule::read(const unsigned char* from) {
  zero();
  std::memcpy(suffix, from, kMaxSuffix);
  num_replace = from[kNumReplace];
  std::memcpy(replace, from + kReplace, kMaxAppend);
  const int bits = from[kBits];
  num_append = static_cast<std::uint8_t>(std::min(bits >> kAppendShift, kMaxAppend)) & 3;
  cont = (bits & kCont) != 0;
  intact = (bits & kIntact) != 0;
  ignoreSzConstraint = (bits & kIgnoreSize) != 0;
}

void TkStemRule::write(unsigned char* to) const {
  std::memset(to, 0, sizeof(TkStemRule));
  std::memcpy(to, suffix, kMaxSuffix);
  to[kNumReplace] = num_replace;
  std::memcpy(to + kReplace, replace, kMaxAppend);
  to[kBits] = static_cast<unsigned char>(num_append << kAppendShift | (cont != 0 ? kCont : 0) |
                                         (intact != 0 ? kIntact : 0) |
                                         (ignoreSzConstraint != 0 ? kIgnoreSize : 0));
}

std::ostream& operator<<(std::ostream& os, const TkStemRule& rule) {
  for (int i = 0; i < TkStemRule::kMaxSuffix && rule.suffix[i] != '\0'; ++i) os << rule.suffix[i];
  if (rule.intact != 0) os << '*';
  os << int{rule.num_replace};
  for (int i = 0; i < rule.num_append; ++i) os << rule.replace[i];
  if (rule.ignoreSzConstraint != 0) os << '?';
  return os << (rule.cont != 0 ? '>' : '.');
}

}  // namespace vandrelle
