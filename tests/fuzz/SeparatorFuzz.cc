// Cuts any bytes by the separator of any type. An article begins and ends within
// the file, and each call gets on.
#include "DocumentImpl/DiSeparator.h"
#include "fuzz/FuzzFeed.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static vandrelle::FuzzFeed feed;
  if (size == 0) return 0;
  vandrelle::DiSeparator* separator = feed.helpers().separator(feed.typeOf(data));
  if (separator == nullptr) return 0;
  std::ifstream* file = feed.open(data + 1, size - 1);
  const long end = static_cast<long>(size - 1);
  while (file->peek() != EOF) {
    const long start = file->tellg();
    long docEnd = -1;
    const long next = separator->gotoNextArticle(file, &docEnd);
    file->clear();
    if (next == -1) {
      if (file->tellg() <= start) __builtin_trap();
      continue;
    }
    // An RTF piece that ends with the file may point a little behind it.
    if (next <= start || next > end + 2 || docEnd < start || docEnd > next) __builtin_trap();
    file->seekg(next);
  }
  return 0;
}
