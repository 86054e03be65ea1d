// Asks the header parser of any type where the header of any bytes ends, for some
// of its values, and for the text to index.
#include "Document/DcMiniHeaderDocument.h"
#include "DocumentImpl/DiHeaderParser.h"
#include "Tool/HeapText.h"
#include "fuzz/FuzzFeed.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using vandrelle::HeapAptr;
  static vandrelle::FuzzFeed feed;
  if (size < 2) return 0;
  vandrelle::DiHeaderParser* parser = feed.helpers().headerParser(feed.typeOf(data));
  if (parser == nullptr) return 0;
  const int length = static_cast<int>(size - 2);
  // The document is all of the file, with its end told or not, or the first part.
  const int docEnd = data[1] == 0 ? 0 : static_cast<int>(length * long{data[1]} / 255);
  std::ifstream* file = feed.open(data + 2, size - 2);
  const int headSize = parser->FindEndOfHeaders(file, docEnd);
  // The blank behind a keyword is taken for granted, be it at the end of the file.
  if (headSize < -1 || headSize > length + 2) __builtin_trap();
  file->clear();
  vandrelle::DcMiniHeaderDocument document(parser, file, 0, docEnd == 0 ? length : docEnd,
                                           headSize < 0 ? length : headSize, 0, "feed");
  for (const char* header : {"title", "author", "url", "keys", "subject", "", "title:"}) {
    const HeapAptr<char> value(document.getHeader(header));
  }
  const HeapAptr<char> indexed(document.getStreamHeaders());
  return 0;
}
