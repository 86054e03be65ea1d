#include "Document/DcDocumentSpecialWordStream.h"

#include "Word.h"

namespace vandrelle {

DcDocumentSpecialWordStream::DcDocumentSpecialWordStream(DcDocumentSpecialWordListNode* extra,
                                                         FdStream* original)
    : extra_(extra), pos_(extra), original_(original) {}

DcDocumentSpecialWordStream::~DcDocumentSpecialWordStream() { delete original_; }

void DcDocumentSpecialWordStream::reset() {
  pos_ = extra_;
  if (original_ != nullptr) original_->reset();
}

bool DcDocumentSpecialWordStream::more() {
  return pos_ != nullptr || (original_ != nullptr && original_->more());
}

int DcDocumentSpecialWordStream::next() {
  if (pos_ != nullptr) {
    pos_ = pos_->next;
  } else if (original_ != nullptr) {
    original_->next();
  }
  return more();
}

void* DcDocumentSpecialWordStream::key() {
  if (pos_ != nullptr) return pos_->wptr;
  return original_ != nullptr ? original_->key() : nullptr;
}

int DcDocumentSpecialWordStream::keySize() {
  if (pos_ != nullptr) return pos_->wptr->num_bytes();
  return original_ != nullptr ? original_->keySize() : 0;
}

void DcDocumentSpecialWordStream::key(void* buffer, int* size) {
  if (pos_ == nullptr && original_ != nullptr) {
    original_->key(buffer, size);
  } else {
    FdStream::key(buffer, size);
  }
}

void* DcDocumentSpecialWordStream::data() {
  return pos_ == nullptr && original_ != nullptr ? original_->data() : nullptr;
}

int DcDocumentSpecialWordStream::dataSize() {
  return pos_ == nullptr && original_ != nullptr ? original_->dataSize() : 0;
}

void DcDocumentSpecialWordStream::data(void* buffer, int* size) {
  if (pos_ == nullptr && original_ != nullptr) {
    original_->data(buffer, size);
  } else if (size != nullptr) {
    *size = 0;
  }
}

int DcDocumentSpecialWordStream::keyType() {
  return original_ != nullptr ? original_->keyType() : 0;
}

int DcDocumentSpecialWordStream::dataType() {
  return original_ != nullptr ? original_->dataType() : 0;
}

}  // namespace vandrelle
