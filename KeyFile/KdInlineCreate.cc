#include "KeyFile/KdInlineCreate.h"

#include <cstring>

#include "KeyFile/KdChunk.h"

namespace vandrelle {

KdInlineCreate::KdInlineCreate(const char* file_name, int32 chunk_size, int32 data_size,
                               int32 attrib)
    : KdFileALCreator(file_name, chunk_size, data_size, attrib) {}

// The base's destructor finds the last entry in place, and writes it out.
KdInlineCreate::~KdInlineCreate() {
  if (in_ptr_file_) return;
  chunk_bytes_ -= entry_size_;
  Write_To_Pointer_File(prev_word_);
  Write_Chunk_To_Disk();
  Create_Last_Chunk();
}

void KdInlineCreate::Put_Entry(const WmWord* word, int common, const void* data, int32 data_size) {
  const int letters = word->num_letters();
  entry_size_ = KdMapBytes(letters) + letters - common + data_size;
  Require_Fit(entry_size_ + chunk_bytes_);
  unsigned char* to = chunk_buf_.get() + chunk_bytes_;
  to += KdPutMap(to, common, letters);
  const int letter_bytes = KdPutLetters(to, true, word, common);
  if (data_size == kKdInlineDataBytes) {
    *to = static_cast<unsigned char>(*to | kKdInlineFlag);
  } else {
    *to = static_cast<unsigned char>(*to & ~kKdInlineFlag);
  }
  if (data_size > 0) std::memcpy(to + letter_bytes, data, static_cast<std::size_t>(data_size));
  chunk_bytes_ += entry_size_;
}

// Before the entry is counted: a caller may go on after a refusal.
void KdInlineCreate::Add_Entry(const WmWord* aWord, const void* data, int32 data_size) {
  if (data_size != 0 && (data_size != kKdInlineDataBytes || data == nullptr)) {
    THROW(KdInit, "Data of an inline key file must have 0 or 4 bytes.");
  }
  KdFileALCreator::Add_Entry(aWord, data, data_size);
}

void KdInlineCreate::Add_Entry_To_Buffer(const WmWord* aWord, const void* data) {
  Put_Entry(aWord, Common_With_Previous(aWord), data, data_size_);
  if (data_size_ > 0) std::memcpy(previous_data_, data, static_cast<std::size_t>(data_size_));
  previous_data_size_ = data_size_;
}

bool KdInlineCreate::Overflow(const WmWord* aWord) {
  const int letters = aWord->num_letters();
  const int non_common = letters - KdCommonLetters(prev_word_, aWord);
  return chunk_size_ < chunk_bytes_ + KdMapBytes(letters) + non_common + data_size_;
}

void KdInlineCreate::Create_Last_Chunk() {
  Put_Entry(prev_word_, 0, previous_data_, previous_data_size_);
  in_ptr_file_ = 1;
}

}  // namespace vandrelle
