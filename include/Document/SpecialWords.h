// Special words: a field and its value as one index term, so that a query can
// constrain on a field. They begin with a blank, which no lexer's word does; the
// indexer takes that as "has no place in the text".
//
//   length of " field value" below 64    one blank, field, blank, value
//   else                                 two blanks, 26 letters of a digest
//
// The digest is the MD5 (RFC 1321) of field, blank, value, spelled 5 bits a
// letter from the low bit of each byte upward: a to z, then 0 to 5.
#pragma once

#include "Tool/ByteOrder.h"

namespace vandrelle {

class SpecialWords {
 public:
  // The letters, ended with a NUL: in `buf` (at least 65 bytes), or in a new
  // array that the caller owns when `buf` is null.
  static char* make(const char* field, const char* value, char* buf);
};

// Reads bytes as a run of 5-bit letters.
class SpecialWords_conv5bpb {
 public:
  SpecialWords_conv5bpb(const unsigned char* buf, uint32 len) : buf_(buf), bitpos_(0), len_(len) {}

  bool more() const { return len_ != 0; }
  char next();  // only while more()

 private:
  const unsigned char* buf_;
  uint32 bitpos_;
  uint32 len_;
};

}  // namespace vandrelle
