// Writes key files of kind 11: entries have 4 bytes of data or none, behind the
// letters, flagged in the top bit of the first stored letter (see KdChunk.h).
// The flag takes that bit from the letter: words begin with ASCII letters.
#pragma once

#include "KeyFile/KdFileALCreator.h"

namespace vandrelle {

class KdInlineCreate final : public KdFileALCreator {
 public:
  KdInlineCreate(const char* file_name, int32 chunk_size, int32 data_size, int32 attrib);
  ~KdInlineCreate() override;

  // Throws _Exception_KdInit also for data that have neither 0 nor 4 bytes.
  void Add_Entry(const WmWord* aWord, const void* data, int32 data_size) override;
  using KdChunkCreator::Add_Entry;

 private:
  void Add_Entry_To_Buffer(const WmWord* aWord, const void* data) override;
  bool Overflow(const WmWord* aWord) override;
  void Create_Last_Chunk();
  void Put_Entry(const WmWord* word, int common, const void* data, int32 data_size);

  char previous_data_[65];
  int32 previous_data_size_ = 0;
};

}  // namespace vandrelle
