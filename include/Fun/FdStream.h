// A walk over pairs of a key and an optional data block, both untyped bytes.
//
//   for (stream->reset(); stream->more(); stream->next()) use(stream->key());
//
// The walk behind every bag, disk table and word source. A new stream stands on
// its first pair. Typed views over it are in Fun/FdWrapper.h.
#pragma once

namespace vandrelle {

class FdStream {
 public:
  virtual ~FdStream();

  // Back to the first pair, as far as the source can be walked again.
  virtual void reset() = 0;

  // Is there a current pair? key() and data() may be asked only while it is so.
  virtual bool more() = 0;
  // Answers more().
  virtual int next() = 0;

  // The current key, owned by the stream and valid until next() or reset().
  virtual void* key() = 0;
  // In bytes. Bags in memory count in whole 4-byte words, so theirs is rounded up.
  virtual int keySize() = 0;
  // Copies the key out. `*size` holds the room at `place` in bytes, and gets
  // keySize(); a null `size` stands for room enough. No more than the room is
  // written.
  virtual void key(void* place, int* size);

  // The same for the data block. A stream without data answers null and 0.
  virtual void* data();
  virtual int dataSize();
  virtual void data(void* place, int* size);

  // Numbers by which an application may tell what a key and a data block are; 0
  // where nobody cares.
  virtual int keyType();
  virtual int dataType();
};

// A stream that walks a bag. The bag must outlive it and stay unchanged.
class FdIterator : public FdStream {};

}  // namespace vandrelle
