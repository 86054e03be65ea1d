// Reference-counted words, for words that must outlive the buffer that produced
// them: map keys, tree keys, term tables. Copies share one buffer, so a word is
// held once however many entries refer to it.
#pragma once

#include <cstdint>

#include "Fun/FdMap.h"
#include "Word.h"

namespace vandrelle {

class WmMagicWord {
 public:
  WmMagicWord() = default;  // invalid
  // Own copies: strings are folded; a null pointer to a word gives an invalid holder.
  explicit WmMagicWord(const char* string) { set(string); }
  explicit WmMagicWord(const WmWord& word) { set(&word); }
  explicit WmMagicWord(const WmWord* word) { set(word); }
  // Shares the word.
  WmMagicWord(const WmMagicWord& other) { set(other); }
  WmMagicWord(WmMagicWord&& other) noexcept : buffer_(other.buffer_) { other.buffer_ = nullptr; }
  ~WmMagicWord() { lower(); }

  WmMagicWord& operator=(const char* string);
  WmMagicWord& operator=(const WmWord& word) { return *this = &word; }
  WmMagicWord& operator=(const WmWord* word);
  WmMagicWord& operator=(const WmMagicWord& other);
  WmMagicWord& operator=(WmMagicWord&& other) noexcept;

  // The held word, null for an invalid holder; good while a holder of it lives.
  // operator* needs a valid holder.
  WmWord* word() const {
    return buffer_ == nullptr ? nullptr : reinterpret_cast<WmWord*>(buffer_->buf);
  }
  WmWord* operator->() const { return word(); }
  WmWord& operator*() const { return *word(); }

  bool valid() const { return buffer_ != nullptr; }
  void invalidate() { lower(); }

  // By the held words; invalid holders are equal to each other and stand before
  // every word.
  bool operator==(const WmMagicWord& other) const { return equals(other.word()); }
  bool operator!=(const WmMagicWord& other) const { return !equals(other.word()); }
  bool operator<(const WmMagicWord& other) const { return order(other.word()) < 0; }
  bool operator==(const WmWord& other) const { return equals(&other); }
  bool operator!=(const WmWord& other) const { return !equals(&other); }
  bool operator<(const WmWord& other) const { return order(&other) < 0; }

 protected:
  struct WordBuffer {
    std::int32_t refcount;
    char buf[];  // the bytes of the WmWord
  };

  // Lets go of the buffer, which is freed with its last holder.
  void lower();
  void raise() {
    if (buffer_ != nullptr) ++buffer_->refcount;
  }
  // For a holder that holds nothing.
  void set(const char* string);
  void set(const WmWord* word);
  void set(const WmMagicWord& other) {
    buffer_ = other.buffer_;
    raise();
  }

 private:
  static WordBuffer* newBuffer(int wordBytes);
  bool equals(const WmWord* other) const;
  int order(const WmWord* other) const;

  WordBuffer* buffer_ = nullptr;
};

using WmSmartWord = WmMagicWord;

// As map keys words hash as many bytes as they have letters, from the length byte
// on: the last letter takes no part, and must not, or maps would be walked in
// another order.
template <>
struct FdMapHash<WmMagicWord> {
  static int hash(const WmMagicWord& key, int numBuckets) {
    const WmWord* word = key.word();
    return FdMapHashImpl(word, word != nullptr ? word->num_letters() : 0, numBuckets);
  }
};

}  // namespace vandrelle
