#include "Tool/GetLine.h"

#include <istream>

namespace vandrelle {

bool getline(std::istream* is, char* buf, int len, char delim) {
  if (len < 1) return false;
  buf[0] = '\0';
  if (!is->good()) return false;
  is->getline(buf, len, delim);
  if (is->gcount() == 0) return false;
  // A full buffer counts as a failure of the stream, but is none here.
  if (is->fail() && !is->bad()) is->clear(is->rdstate() & ~std::ios::failbit);
  return true;
}

}  // namespace vandrelle
