// A storage: an abstract growable space of bytes, addressed by 64-bit positions,
// read and written through buffers that are windows on it. It holds the caller's
// bytes and nothing else.
//
// Rows, proximity data, digests and the field database live in storages, because
// they may outgrow what one file can hold (StFileStorage). A storage is served by
// one thread, and must outlive its buffers.
#pragma once

#include "Storage/StStoragePos.h"

namespace vandrelle {

class StStorageBuffer;
class StStorageHandle;

using byte = unsigned char;

enum StAccessMode { kStRead = 1, kStWrite = 2, kStReadWrite = 3 };

// Access-pattern advice is carried by every buffer and has no effect.
constexpr int kStDefaultAdvice = 3;

class StStorage {
 public:
  StStorage() = default;
  StStorage(const StStorage&) = delete;
  StStorage& operator=(const StStorage&) = delete;

  // Creates anew, empty and writable, whatever stood there before.
  virtual void Initialize() = 0;
  // Attaches to what exists; `writable` and `create` together make it if need be.
  virtual void Open(bool writable, bool create) = 0;
  // Brings everything written so far to the device.
  virtual void Flush() = 0;
  virtual ~StStorage() = default;
  // The size in bytes.
  virtual StStoragePos MaxPos() = 0;
  // Shrinks, or grows with zero bytes.
  virtual void SetMaxPos(const StStoragePos& newMax) = 0;

  bool IsWritable() const { return isWritable; }
  bool IsOpen() const { return isOpen; }

  // A handle on a new buffer of `len` bytes at `pos`; `mode` is a StAccessMode.
  // On a writable storage the buffer may reach beyond the end, which grows it.
  StStorageHandle Get(const StStoragePos& pos, StStorageLen len, int mode, int advice);
  // A handle on a new buffer of `len` bytes for writing, which begins at MaxPos().
  StStorageHandle GetAtEnd(StStorageLen len);

 protected:
  friend class StStorageBuffer;
  friend class StStorageHandle;

  // A buffer's birth and end. NewData sets its data and info; DeleteData writes
  // what must be written and frees them.
  virtual void NewData(StStorageBuffer* buffer) = 0;
  virtual void DeleteData(StStorageBuffer* buffer) = 0;

  static void SetBufferData(StStorageBuffer* buffer, byte* data);
  static void* BufferInfo(const StStorageBuffer* buffer);
  static void SetBufferInfo(StStorageBuffer* buffer, void* info);

  bool isWritable = false;
  bool isOpen = false;
};

// A window on a storage. It is held by StStorageHandles and ends with the last
// of them; what was changed in it is written out then, if a holder has said that
// it is dirty.
class StStorageBuffer {
 public:
  // `mode` counts only on a writable storage; on another the buffer is for
  // reading. Unless read, or mapped, its data are not filled.
  StStorageBuffer(const StStoragePos& pos, StStorageLen l, StStorage* s, int mode, int advice);
  // The appending form: `l` bytes at the end of the storage, for writing. Throws
  // _Exception_St on a storage that is not writable.
  StStorageBuffer(StStorageLen l, StStorage* s);
  StStorageBuffer(const StStorageBuffer&) = delete;
  StStorageBuffer& operator=(const StStorageBuffer&) = delete;

  const StStoragePos& Start() const { return start; }
  StStorageLen Length() const { return length; }
  // `Length()` bytes, read-only if AccessMode() is 1.
  byte* Data() const { return data; }
  int AccessMode() const { return accessMode; }
  int Advice() const { return advice; }

 private:
  friend class StStorage;
  friend class StStorageHandle;
  ~StStorageBuffer() = default;  // by the last handle, behind DeleteData

  byte* data = nullptr;
  StStoragePos start;
  StStorageLen length;
  StStorage* storage;
  int accessMode;
  int advice;
  void* info = nullptr;  // the storage's own
  int refCount = 0;
  int writerCount = 0;  // above 0: dirty
};

}  // namespace vandrelle
