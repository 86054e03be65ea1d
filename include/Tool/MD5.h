// The MD5 message digest (RFC 1321).
//
//   MD5 md5;
//   md5.update(text, length);
//   unsigned char digest[16];
//   md5.final(digest);
#pragma once

#include <cstdint>

namespace vandrelle {

class MD5 {
 public:
  static constexpr int kDigestBytes = 16;

  MD5() { init(); }

  // Starts a new message.
  void init();

  void update(const unsigned char* bytes, unsigned int length);
  void update(unsigned char byte) { update(&byte, 1); }
  void update(const void* bytes, unsigned int length) {
    update(static_cast<const unsigned char*>(bytes), length);
  }

  // Ends the message and stores its digest, 16 bytes.
  void final(unsigned char* digest);
  void final(void* digest) { final(static_cast<unsigned char*>(digest)); }

 private:
  void transform(const unsigned char* block);

  std::uint32_t state[4];
  std::uint32_t count[2];  // bits of the message, low word first
  unsigned char buffer[64];
  unsigned int index;  // bytes waiting in `buffer`
};

}  // namespace vandrelle
