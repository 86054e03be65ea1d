// Heap copies of NUL-terminated text, as they cross interfaces that hand over a
// `char*`: made with new[], freed by the owner with delete[]. HeapAptr holds one
// (or any other array) until the end of a scope.
#pragma once

#include <cstring>
#include <memory>
#include <string_view>

namespace vandrelle {

// A copy of `text`; null for null.
inline char* copyText(const char* text) {
  if (text == nullptr) return nullptr;
  const std::size_t bytes = std::strlen(text) + 1;
  char* copy = new char[bytes];
  std::memcpy(copy, text, bytes);
  return copy;
}
inline char* copyText(std::string_view text) {
  char* copy = new char[text.size() + 1];
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

template <typename T>
using HeapAptr = std::unique_ptr<T[]>;
// The same type for arrays that are no text, so that a reader sees which hold a text
// that ends in NUL and which go with a length.
template <typename T>
using HeapArray = std::unique_ptr<T[]>;

}  // namespace vandrelle
