// Reads a proximity file (see IkProxCreator.h) in order, or a word of it by the
// position map beside it, <file>.map.
#pragma once

#include <memory>

#include "Index/IkProxBuffer.h"
#include "Index/IkProxNumber.h"
#include "Storage/StInputBuffer.h"
#include "Storage/StPosMapBinder.h"
#include "Storage/StStorage.h"
#include "Tool/NameManager.h"

namespace vandrelle {

class IkProxBinder {
 public:
  // Throws _Exception_St for a missing file.
  explicit IkProxBinder(const char* file);
  ~IkProxBinder();
  IkProxBinder(const IkProxBinder&) = delete;
  IkProxBinder& operator=(const IkProxBinder&) = delete;

  // A new chunk begins.
  void reset() { lastpos_ = 0; }
  // The next position in the chunk, or the next number as it stands. Both throw
  // _Exception_St at the end of the file.
  uint32 get() { return lastpos_ += readnum(); }
  uint32 readnum() {
    return IkReadProxNumber(
        [this]() -> uint32 { return static_cast<unsigned char>(buffer_->get()); });
  }

  void seek(const StStoragePos& pos) { buffer_->seekg(pos); }
  StStoragePos tell() const { return buffer_->tellg(); }

  // The map from a word's number to where its positions begin; opened on first
  // use, owned by the binder.
  StPosMapBinder* map();

  // The positions of a word, for the caller to own. Throws _Exception_Ik when
  // the map leads out of the file.
  IkProxBuffer* getBuffer(uint32 word);

 private:
  std::unique_ptr<StStorage> storage_;
  std::unique_ptr<StInputBuffer> buffer_;
  NameManager name_;
  std::unique_ptr<StPosMapBinder> map_;
  uint32 lastpos_ = 0;
};

}  // namespace vandrelle
