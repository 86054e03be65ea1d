#include "Document/DcSimpleDocument.h"

#include <algorithm>
#include <cstring>

#include "Document/DcDocumentStream.h"
#include "Tool/HeapText.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(DcNoHeaderDocument);
DEFINE_DESCRIPTOR(DcSimpleDocument);

namespace {
constexpr int kBlockSize = 4096;
}  // namespace

FdStream* DcNoHeaderDocument::original_words() {
  return new DcDocumentStream(stemmer_, lexer_, this, bufsize_);
}

DcSimpleDocument::DcSimpleDocument(int docnum, const char* name, const char* buffer, int size,
                                   char* origbuffer, TkStemmer* stemmer, TkLexer* lexer)
    : DcNoHeaderDocument(stemmer, lexer, kBlockSize),
      buffer_(buffer),
      origbuffer_(origbuffer),
      number_(docnum),
      name_(copyText(name)),
      size_(size) {}

DcSimpleDocument::~DcSimpleDocument() {
  delete[] origbuffer_;
  delete[] name_;
}

char* DcSimpleDocument::documentName() const {
  return name_ != nullptr ? copyText(name_) : DcDocument::documentName();
}

char* DcSimpleDocument::characters(long offset, int num, char* place) {
  if (offset < 0 || offset >= size_) return nullptr;
  num = static_cast<int>(std::clamp<long>(num, 0, size_ - offset));
  if (place == nullptr) place = new char[static_cast<std::size_t>(num)];
  std::memcpy(place, buffer_ + offset, static_cast<std::size_t>(num));
  return place;
}

}  // namespace vandrelle
