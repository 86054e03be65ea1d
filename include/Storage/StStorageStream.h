// A storage read and written like a file, at one position that moves. It works
// through one buffer of the storage at a time, kBufferBytes long. Whenever no
// buffer is held, after flush() and close() above all, the storage ends at the
// last byte written.
#pragma once

#include "Storage/StStorageHandle.h"

namespace vandrelle {

class StStorageStream {
 public:
  static constexpr StStorageLen kBufferBytes = 4096;

  // Mode bits. Without kRead the storage is emptied; with kRead and kWrite it is
  // created if need be, unless kExisting says that it must be there.
  enum Mode { kRead = 1, kWrite = 2, kExisting = 4, kAtEnd = 8 };
  // Seek modes: from the start, back from the end, forward and back from here.
  enum Seek { kBackward = 0, kAbsolute = 1, kFromEnd = 2, kForward = 4 };

  StStorageStream() = default;
  StStorageStream(const char* path, int mode) { open(path, mode); }
  StStorageStream(StStorage* storage, int mode) { open(storage, mode); }
  ~StStorageStream() { close(); }
  StStorageStream(const StStorageStream&) = delete;
  StStorageStream& operator=(const StStorageStream&) = delete;

  // Closes first. On a path, the stream makes a file storage and owns it; a
  // storage that is given may be open already. Throw what the storage throws, and
  // _Exception_St for kWrite on a storage that is open but not writable.
  void open(const char* path, int mode);
  void open(StStorage* storage, int mode);
  int isOpen() const { return isOpen_; }
  // Both write what is waiting; flush() leaves the device its time.
  void close();
  void flush();

  // 1, or 0 if the new position would lie outside of the storage; the position
  // stays then. A `pos` beyond the end is outside in every mode.
  int seek(const StStoragePos& pos, int mode);
  StStoragePos tell() const { return pos_; }

  // The next byte; -1 at the end and without kRead.
  int get();
  int peek();
  // Up to `len` bytes; how many there were.
  unsigned int read(char* to, unsigned int len);
  // A string up to its NUL, which is taken too, or up to `size` - 1 characters;
  // it is always ended with a NUL. 0 if the storage ends before.
  int getString(char* text, unsigned int size = ~0u);

  // How many bytes were written: all, or none without kWrite and when closed.
  int put(char c) { return static_cast<int>(write(&c, 1)); }
  unsigned int write(const char* from, unsigned int len);

  StStorage* storage() const { return storage_; }

 private:
  void initialize(int mode);
  void openStorage();
  byte* getBuffer();
  byte* newBuffer();
  void releaseBuffer();
  unsigned int swapBuffers(char* buf, unsigned int len, int mode);

  StStoragePos pos_;
  StStoragePos maxpos_;  // end of what is in the storage or was written
  StStorageHandle sbuf_;
  byte* buf_ = nullptr;
  StStoragePos bufbeg_;
  StStoragePos bufend_;  // may lie beyond maxpos_ in a buffer that appends
  int internal_ = 0;     // the stream made the storage
  StStorage* storage_ = nullptr;
  int mode_ = 0;
  int isOpen_ = 0;
};

}  // namespace vandrelle
