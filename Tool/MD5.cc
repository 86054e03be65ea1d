#include "Tool/MD5.h"

#include <bit>
#include <cstring>

#include "Tool/ByteOrder.h"

namespace vandrelle {

namespace {

constexpr unsigned kBlockBytes = 64;
constexpr unsigned kLengthBytes = 8;

// RFC 1321, 3.4: T[i] is the integer part of 4294967296 times abs(sin(i + 1)).
constexpr std::uint32_t kSines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr int kRotations[4][4] = {
    {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

}  // namespace

void MD5::init() {
  state[0] = 0x67452301;
  state[1] = 0xefcdab89;
  state[2] = 0x98badcfe;
  state[3] = 0x10325476;
  count[0] = count[1] = 0;
  index = 0;
}

void MD5::update(const unsigned char* bytes, unsigned int length) {
  const std::uint32_t bits = static_cast<std::uint32_t>(length) << 3;
  count[0] += bits;
  count[1] += (length >> 29) + (count[0] < bits ? 1 : 0);
  while (length > 0) {
    if (index == 0 && length >= kBlockBytes) {
      transform(bytes);
      bytes += kBlockBytes;
      length -= kBlockBytes;
      continue;
    }
    const unsigned room = kBlockBytes - index;
    const unsigned taken = length < room ? length : room;
    std::memcpy(buffer + index, bytes, taken);
    index += taken;
    bytes += taken;
    length -= taken;
    if (index == kBlockBytes) {
      transform(buffer);
      index = 0;
    }
  }
}

void MD5::final(unsigned char* digest) {
  static constexpr unsigned char kPadding[kBlockBytes] = {0x80};
  unsigned char bits[kLengthBytes];
  storeLittleU32(bits, count[0]);
  storeLittleU32(bits + 4, count[1]);
  const unsigned end = kBlockBytes - kLengthBytes;
  update(kPadding, index < end ? end - index : kBlockBytes + end - index);
  update(bits, kLengthBytes);
  for (int i = 0; i < 4; ++i) storeLittleU32(digest + i * 4, state[i]);
}

void MD5::transform(const unsigned char* block) {
  std::uint32_t words[16];
  for (int i = 0; i < 16; ++i) words[i] = loadLittleU32(block + i * 4);
  std::uint32_t a = state[0];
  std::uint32_t b = state[1];
  std::uint32_t c = state[2];
  std::uint32_t d = state[3];
  for (int i = 0; i < 64; ++i) {
    std::uint32_t mixed;
    int word;
    switch (i / 16) {
      case 0:
        mixed = (b & c) | (~b & d);
        word = i;
        break;
      case 1:
        mixed = (d & b) | (~d & c);
        word = (5 * i + 1) % 16;
        break;
      case 2:
        mixed = b ^ c ^ d;
        word = (3 * i + 5) % 16;
        break;
      default:
        mixed = c ^ (b | ~d);
        word = 7 * i % 16;
        break;
    }
    const std::uint32_t sum = a + mixed + kSines[i] + words[word];
    a = d;
    d = c;
    c = b;
    b += std::rotl(sum, kRotations[i / 16][i % 4]);
  }
  state[0] += a;
  state[1] += b;
  state[2] += c;
  state[3] += d;
}

}  // namespace vandrelle
