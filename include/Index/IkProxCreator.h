// Writes a proximity file, <root>.prx or <root>.prxNNN: for each word and each
// chunk of its row the positions of the word in the chunk. No header and no
// separators: a sequence of numbers, in the order of the rows, as many for a
// chunk as its frequency says. The first is a position, each that follows the
// gap to the one before. How a number is coded: Tool/SevenBit.h.
#pragma once

#include <memory>

#include "Storage/StAppendBuffer.h"
#include "Storage/StStorage.h"
#include "Storage/StStoragePos.h"
#include "Tool/SevenBit.h"

namespace vandrelle {

class IkProxCreator {
 public:
  // Makes an empty file, replacing an old one.
  explicit IkProxCreator(const char* file);
  ~IkProxCreator();  // writes out what waits
  IkProxCreator(const IkProxCreator&) = delete;
  IkProxCreator& operator=(const IkProxCreator&) = delete;

  // A new chunk begins.
  void reset() { lastpos_ = 0; }
  // The next position in the chunk, not below the one before.
  void add(uint32 pos) {
    writenum(pos - lastpos_);
    lastpos_ = pos;
  }
  // A number as it stands, to copy gaps from another file.
  void writenum(uint32 num) {
    putSevenBit(num, [this](unsigned char group) { buffer_->put(group); });
  }

  // Where in the file the next number will stand.
  StStoragePos tell() const { return buffer_->tellp(); }
  // Takes back all that was written from `end` on, which tell() has answered before.
  void truncate(const StStoragePos& end);

 private:
  std::unique_ptr<StStorage> storage_;
  std::unique_ptr<StAppendBuffer> buffer_;
  uint32 lastpos_ = 0;
};

}  // namespace vandrelle
