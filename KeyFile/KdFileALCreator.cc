#include "KeyFile/KdFileALCreator.h"

#include <cstring>

#include "KeyFile/KdChunk.h"
#include "Tool/NameManager.h"

namespace vandrelle {

namespace {

const char* requireName(const char* file_name) {
  if (file_name == nullptr) THROW(IO, "Need non-null name for key/pointer files.");
  return file_name;
}

}  // namespace

KdFileALCreator::KdFileALCreator(const char* file_name, int32 chunk_size, int32 data_size,
                                 int32 type)
    : KdChunkCreator((requireName(file_name), chunk_size), data_size,
                     type == kKdPackedConstant || type == kKdConstant,
                     type != kKdPackedVarying && type != kKdPackedConstant) {
  NameManager names(file_name);
  Open_Key_File(names.suffix(".key"));
  if (!Open_New_File(ptr_file_, names.suffix(".ptr")))
    THROW(IO, "Can't open pointer file for writing: " << names.suffix(".ptr"));
  if (type < kKdPackedVarying || type > kKdInline) THROW(KdInit, "Illegal keyfile type specified");
  Write_Header(ptr_file_, type);
}

KdFileALCreator::~KdFileALCreator() {
  Separate_Last_Entry();
  Close_Key_File();
  Write_Counters(ptr_file_);
  ptr_file_.close();
  if (!ptr_file_) THROW(IO, "Error writing pointer file.");
}

void KdFileALCreator::Write_To_Pointer_File(const WmWord* aWord) {
  Pass_Chunk();
  const int letters = aWord->num_letters();
  char record[4 + 2 + 64 + 4];
  storeS32(record, keyfile_pos_);
  storeS16(record + 4, static_cast<std::int16_t>(letters));
  std::memcpy(record + 6, aWord->letters(), static_cast<std::size_t>(letters));
  storeS32(record + 6 + letters, word_num_);
  ptr_file_.write(record, 10 + letters);
  if (!ptr_file_) THROW(IO, "Error writing to pointer file.");
  ++num_chunks_;
}

}  // namespace vandrelle
