#include "Storage/StStorageStream.h"

#include <algorithm>
#include <cstring>

#include "Storage/StException.h"
#include "Storage/StFileStorage.h"

namespace vandrelle {

void StStorageStream::open(const char* path, int mode) {
  close();
  storage_ = new StFileStorage(path, true);
  internal_ = 1;
  initialize(mode);
}

void StStorageStream::open(StStorage* storage, int mode) {
  close();
  storage_ = storage;
  internal_ = 0;
  initialize(mode);
}

void StStorageStream::initialize(int mode) {
  mode_ = mode;
  openStorage();
  maxpos_ = storage_->MaxPos();
  pos_ = (mode & kAtEnd) != 0 ? maxpos_ : StStoragePos();
  isOpen_ = 1;
}

void StStorageStream::openStorage() {
  if (!storage_->IsOpen()) {
    if ((mode_ & kRead) == 0) {
      storage_->Initialize();
    } else if ((mode_ & kWrite) == 0) {
      storage_->Open(false, false);
    } else {
      storage_->Open(true, (mode_ & kExisting) == 0);
    }
  }
  if ((mode_ & kWrite) != 0 && !storage_->IsWritable()) {
    THROW(St, "Can't write to a read-only storage!");
  }
}

void StStorageStream::close() {
  releaseBuffer();
  if (internal_) delete storage_;
  storage_ = nullptr;
  internal_ = 0;
  mode_ = 0;
  isOpen_ = 0;
  pos_ = maxpos_ = StStoragePos();
}

void StStorageStream::flush() { releaseBuffer(); }

// The buffer that appends is longer than what was written to it. The stream has let
// go of it before the storage may throw.
void StStorageStream::releaseBuffer() {
  if (!sbuf_.valid()) return;
  const bool longer = bufend_ > maxpos_;
  buf_ = nullptr;
  bufbeg_ = bufend_ = StStoragePos();
  sbuf_.release();
  if (longer) storage_->SetMaxPos(maxpos_);
}

int StStorageStream::seek(const StStoragePos& pos, int mode) {
  if (pos > maxpos_) return 0;
  if ((mode & kAbsolute) != 0) {
    pos_ = pos;
  } else if ((mode & kFromEnd) != 0) {
    pos_ = maxpos_ - pos;
  } else if ((mode & kForward) != 0) {
    if (pos > maxpos_ - pos_) return 0;
    pos_ += pos;
  } else {
    if (pos_ < pos) return 0;
    pos_ -= pos;
  }
  return 1;
}

byte* StStorageStream::getBuffer() {
  if (pos_ >= bufbeg_ && pos_ < bufend_) return buf_ + (pos_ - bufbeg_).Lo();
  releaseBuffer();
  return newBuffer();
}

// A writing stream reads its buffers in, even where it is not for reading: a
// buffer may be changed in part only, and goes back as a whole.
byte* StStorageStream::newBuffer() {
  const bool writing = (mode_ & kWrite) != 0;
  if (pos_ >= maxpos_) {
    if (!writing) return nullptr;
    sbuf_ = storage_->GetAtEnd(kBufferBytes);
  } else {
    const auto length =
        static_cast<StStorageLen>(std::min<std::uint64_t>((maxpos_ - pos_).Bytes(), kBufferBytes));
    sbuf_ = storage_->Get(pos_, length, writing ? kStReadWrite : kStRead, kStDefaultAdvice);
  }
  bufbeg_ = sbuf_.start();
  bufend_ = bufbeg_ + sbuf_.length();
  buf_ = sbuf_.data();
  return buf_;
}

int StStorageStream::peek() {
  if ((mode_ & kRead) == 0 || pos_ >= maxpos_) return -1;
  return *getBuffer();
}

int StStorageStream::get() {
  const int c = peek();
  if (c >= 0) pos_ += 1;
  return c;
}

// Copies between `buf` and the storage from pos_ on, in pieces of what the current
// buffer has room for; how many bytes were moved.
unsigned int StStorageStream::swapBuffers(char* buf, unsigned int len, int mode) {
  unsigned int moved = 0;
  while (moved < len) {
    if (mode == kRead && pos_ >= maxpos_) break;
    byte* window = getBuffer();
    if (window == nullptr) break;
    const StStoragePos end = mode == kRead ? std::min(bufend_, maxpos_) : bufend_;
    const unsigned int piece = std::min(len - moved, (end - pos_).Lo());
    if (mode == kRead) {
      std::memcpy(buf + moved, window, piece);
    } else {
      std::memcpy(window, buf + moved, piece);
      if (!sbuf_.dirty()) sbuf_.markDirty();
    }
    moved += piece;
    pos_ += piece;
    if (mode == kWrite && pos_ > maxpos_) maxpos_ = pos_;
  }
  return moved;
}

unsigned int StStorageStream::read(char* to, unsigned int len) {
  return (mode_ & kRead) != 0 ? swapBuffers(to, len, kRead) : 0;
}

unsigned int StStorageStream::write(const char* from, unsigned int len) {
  return (mode_ & kWrite) != 0 ? swapBuffers(const_cast<char*>(from), len, kWrite) : 0;
}

int StStorageStream::getString(char* text, unsigned int size) {
  if (size == 0) return 0;
  for (unsigned int i = 0; i < size - 1; ++i) {
    const int c = get();
    text[i] = static_cast<char>(c);
    if (c == 0) return 1;
    if (c < 0) {
      text[i] = '\0';
      return 0;
    }
  }
  text[size - 1] = '\0';
  return 1;
}

}  // namespace vandrelle
