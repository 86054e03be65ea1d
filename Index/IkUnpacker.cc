#include "Index/IkUnpacker.h"

#include "Index/IkDataFileBinder.h"

namespace vandrelle {

void IkUnpacker::set(const unsigned char* buffer, int size, int initialSizeMode) {
  sourceStart_ = buffer;
  sourceEnd_ = buffer;
  initialSizeMode_ = initialSizeMode;
  if (size > 0 && (isSizeMode(initialSizeMode) || initialSizeMode == kAbsolute)) {
    sourceEnd_ += size;
  }
  reset();
}

void IkUnpacker::set(IkDataFileBinder* binder, int initialSizeMode) {
  idf_ = binder->scale();
  binder->loadRow();
  const int size = binder->more() ? static_cast<int>(binder->dataSize()) : 0;
  set(binder->rowData(), size, initialSizeMode);
}

void IkUnpacker::reset() {
  state({sourceStart_, 0, 0, initialSizeMode_, 1});
  read();
}

// The last bytes, with zeros behind them.
IkUnpackerState IkUnpacker::decodeTail(IkUnpackerState state, const unsigned char* end) {
  const unsigned char* const source = state.source;
  const auto left = static_cast<std::size_t>(end - source);
  if (left == 0) {
    state.more = 0;
    return state;
  }
  unsigned char tail[2 * kMaxPairBytes] = {};
  std::memcpy(tail, source, left);
  state.source = tail;
  decode(state);
  const auto used = static_cast<std::size_t>(state.source - tail);
  if (used > left) state.more = 0;
  state.source = source + (used > left ? left : used);
  return state;
}

}  // namespace vandrelle
