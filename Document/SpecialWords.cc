#include "Document/SpecialWords.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Tool/MD5.h"

namespace vandrelle {

namespace {

constexpr std::size_t kDigestBytes = 16;
constexpr std::size_t kHashedLetters = 28;
// Readable words below this many letters fit a word; the rest are hashed.
constexpr std::size_t kReadableLimit = 64;

[[noreturn]] void letterCountBroken() {
  std::fprintf(stderr, "Assertion failed: i == nchars, file SpecialWords\n");
  std::abort();
}

char* hashedWord(const char* field, std::size_t flen, const char* value, std::size_t vlen,
                 char* buf) {
  if (buf == nullptr) buf = new char[kHashedLetters + 1];
  unsigned char digest[kDigestBytes];
  MD5 md5;
  md5.init();
  md5.update(static_cast<const void*>(field), static_cast<unsigned>(flen));
  md5.update(static_cast<unsigned char>(' '));
  md5.update(static_cast<const void*>(value), static_cast<unsigned>(vlen));
  md5.final(digest);

  std::size_t i = 0;
  buf[i++] = ' ';
  buf[i++] = ' ';
  SpecialWords_conv5bpb letters(digest, kDigestBytes);
  while (letters.more() && i < kHashedLetters) buf[i++] = letters.next();
  if (i != kHashedLetters || letters.more()) letterCountBroken();
  buf[i] = '\0';
  return buf;
}

}  // namespace

char SpecialWords_conv5bpb::next() {
  const unsigned high = len_ < 2 ? 0u : static_cast<unsigned>(buf_[1]) << (8 - bitpos_);
  const unsigned x = ((static_cast<unsigned>(buf_[0]) >> bitpos_) + high) & 31;
  bitpos_ += 5;
  if (bitpos_ >= 8) {
    bitpos_ -= 8;
    ++buf_;
    --len_;
  }
  return static_cast<char>(x < 26 ? 'a' + x : x + 22);
}

char* SpecialWords::make(const char* field, const char* value, char* buf) {
  const std::size_t flen = std::strlen(field);
  const std::size_t vlen = std::strlen(value);
  const std::size_t letters = flen + vlen + 2;
  if (letters >= kReadableLimit) return hashedWord(field, flen, value, vlen, buf);

  if (buf == nullptr) buf = new char[letters + 1];
  char* to = buf;
  *to++ = ' ';
  to = std::strcpy(to, field) + flen;
  *to++ = ' ';
  std::strcpy(to, value);
  return buf;
}

}  // namespace vandrelle
