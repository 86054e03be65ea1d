#include "MagicWord.h"

#include <new>

namespace vandrelle {

WmMagicWord& WmMagicWord::operator=(const char* string) {
  // The new word is made before the old one goes: `string` may lie in it.
  WmMagicWord fresh(string);
  return *this = static_cast<WmMagicWord&&>(fresh);
}

WmMagicWord& WmMagicWord::operator=(const WmWord* word) {
  WmMagicWord fresh(word);
  return *this = static_cast<WmMagicWord&&>(fresh);
}

WmMagicWord& WmMagicWord::operator=(const WmMagicWord& other) {
  if (buffer_ != other.buffer_) {
    lower();
    set(other);
  }
  return *this;
}

WmMagicWord& WmMagicWord::operator=(WmMagicWord&& other) noexcept {
  if (this != &other) {
    lower();
    buffer_ = other.buffer_;
    other.buffer_ = nullptr;
  }
  return *this;
}

void WmMagicWord::lower() {
  if (buffer_ != nullptr && --buffer_->refcount < 1) ::operator delete(buffer_);
  buffer_ = nullptr;
}

WmMagicWord::WordBuffer* WmMagicWord::newBuffer(int wordBytes) {
  auto* buffer = static_cast<WordBuffer*>(
      ::operator new(sizeof(WordBuffer) + static_cast<std::size_t>(wordBytes)));
  buffer->refcount = 1;
  return buffer;
}

void WmMagicWord::set(const char* string) {
  // Folds and refuses over-long strings before anything is allocated.
  const WmLocalWord word(string);
  set(word.word());
}

void WmMagicWord::set(const WmWord* word) {
  if (word == nullptr) return;
  buffer_ = newBuffer(word->num_bytes());
  new (buffer_->buf) WmWord(*word);
}

bool WmMagicWord::equals(const WmWord* other) const {
  const WmWord* own = word();
  return own == other || (own != nullptr && other != nullptr && *own == *other);
}

int WmMagicWord::order(const WmWord* other) const {
  const WmWord* own = word();
  if (own == other) return 0;
  if (own == nullptr) return -1;
  if (other == nullptr) return 1;
  return WmWord::cmp(own, other);
}

}  // namespace vandrelle
