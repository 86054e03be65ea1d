// What all writers of key files share: the chunk that is being built, the rules
// by which it is closed, and the key file it goes to. How the pointer file looks
// is the derived class's.
//
// A chunk begins at the first word, at every change of the first letter and
// where the next entry would not fit. The last chunk holds one entry, the last
// word of the file, stored whole: streams end by it, and the last pointer record
// so tells the number of words.
#pragma once

#include <fstream>
#include <memory>

#include "KeyFile.h"

namespace vandrelle {

class KdChunkCreator : public KdFileCreator {
 public:
  void Add_Entry(const WmWord* aWord, const void* data, int32 data_size) override;
  void Add_Entry(const char* aWord, const void* data, int32 data_size) override;

 protected:
  // `data_size` in bytes counts where the data are constant. Throws
  // _Exception_KdInit if it is not below `chunk_size`.
  KdChunkCreator(int32 chunk_size, int32 data_size, int const_data, int aligned);

  virtual void Add_Entry_To_Buffer(const WmWord* aWord, const void* data);
  // Would the entry overflow the chunk?
  virtual bool Overflow(const WmWord* aWord);
  // Enters a chunk that begins with `aWord` behind the bytes in the buffer.
  virtual void Write_To_Pointer_File(const WmWord* aWord) = 0;

  bool Is_New_Letter(const WmWord* aWord) const;
  // keyfile_pos_ moves behind the chunk in the buffer; throws at 2 gigabytes.
  void Pass_Chunk();
  void Write_Chunk_To_Disk();
  // Closes the chunk before its latest entry and makes that entry the last chunk;
  // nothing if it is first in its chunk already. Destructors call it first.
  void Separate_Last_Entry();
  // Rewrites the entry that stands behind `prev_chunk_size` bytes of the buffer at
  // the buffer's start, sharing nothing.
  void Create_Last_Chunk(int32 prev_chunk_size);
  // Writes the last chunk; keyfile_pos_ is the key file's length then.
  void Close_Key_File();

  void Open_Key_File(const char* path);
  static bool Open_New_File(std::fstream& file, const char* path);
  void Write_Header(std::ostream& ptr_file, int32 type);
  void Write_Counters(std::ostream& ptr_file);
  void Require_Fit(int32 entry_bytes) const;
  int Common_With_Previous(const WmWord* aWord) const;

  std::fstream key_file_;
  int32 num_chunks_ = 0;  // pointer records written
  int32 chunk_size_;
  int32 data_size_;  // where it varies, of the entry at hand
  int const_data_;
  int aligned_;
  std::unique_ptr<unsigned char[]> chunk_buf_;
  int32 chunk_bytes_ = 0;  // used in chunk_buf_
  int32 keyfile_pos_ = 0;  // of the chunk that is being built
  int32 entry_size_ = 0;   // of the latest entry
  // The latest word is the first of its chunk; a table without words has nothing
  // to take out of its chunk either.
  int in_ptr_file_ = 1;
  int32 word_num_ = -1;
  WmWord* prev_word_;
  char prev_word_buffer_[64];
};

}  // namespace vandrelle
