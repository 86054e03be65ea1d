#include "Document/DcBintest.h"

#include <fcntl.h>
#include <unistd.h>

#include "Tool/VandrelleLog.h"

namespace vandrelle {
namespace {

// The C locale's printable characters and white space, whatever the locale in
// force. Bytes with the high bit set are no text.
bool isText(char byte) { return (byte >= ' ' && byte <= '~') || (byte >= '\t' && byte <= '\r'); }

}  // namespace

int DcBintest::isBin(const char* filename) {
  const int descriptor = open(filename, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    LOG(0, 1, "File : " << filename << ". Can't open Skipped.");
    return 1;
  }
  // A failing read leaves the buffer as it is; the creator reports the file.
  [[maybe_unused]] const ssize_t length = read(descriptor, testbuf_, sizeof testbuf_);
  close(descriptor);

  int count = 0;
  int ncount = 0;
  for (const char byte : testbuf_) {
    if (byte == 0) continue;
    if (isText(byte)) {
      ++count;
    } else {
      ++ncount;
    }
  }
  // Without any non-text byte the quotient is infinite or undefined, and the
  // comparison false.
  const float ratio = static_cast<float>(count) / static_cast<float>(ncount);
  return static_cast<double>(ratio) < threshold_ / 100.0 ? 1 : 0;
}

}  // namespace vandrelle
