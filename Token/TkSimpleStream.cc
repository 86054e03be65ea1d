#include "Token/TkSimpleStream.h"

namespace vandrelle {

int TkSimpleStream::tokNextCharacter() {
  const int c = is_->get();
  if (c == std::istream::traits_type::eof()) {
    // Also when the stream is bad, so that no reader waits for more.
    is_->setstate(std::ios::eofbit);
    return -1;
  }
  return static_cast<signed char>(c);
}

int TkSimpleStream::tokPeekCharacter() {
  const bool ended = is_->eof();
  const int c = is_->peek();
  // A peek at the end is not yet a read of it.
  if (!ended && is_->eof()) is_->clear(is_->rdstate() & ~std::ios::eofbit);
  return c == std::istream::traits_type::eof() ? -1 : static_cast<signed char>(c);
}

}  // namespace vandrelle
