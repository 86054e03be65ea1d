#include "KeyFile/KdMmapCreator.h"

#include <memory>

#include "KeyFile/KdPointerTable.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

const char* requireName(const char* file_name) {
  if (file_name == nullptr) THROW(IO, "Need non-null name for key/ptr files.");
  return file_name;
}

}  // namespace

KdMmapCreator::KdMmapCreator(const char* file_name, int32 chunk_size, int32 data_size, int32 type)
    : KdChunkCreator((requireName(file_name), chunk_size), data_size, 1, 1), base_name_(file_name) {
  Open_Key_File(base_name_.suffix(".key"));
  if (!Open_New_File(ptr_file_, base_name_.suffix(".ptr"))) {
    THROW(IO, "Can't open pointer file for writing: " << base_name_.suffix(".ptr"));
  }
  if (!Open_New_File(wrd_file_, base_name_.suffix(".wrd")))
    THROW(IO, "Can't open word file for writing: " << base_name_.suffix(".wrd"));
  Write_Header(ptr_file_, type);
}

KdMmapCreator::~KdMmapCreator() {
  Separate_Last_Entry();
  Close_Key_File();
  Append_Words();
  Write_Counters(ptr_file_);
  SysTools::removeFile(base_name_.suffix(".wrd"));
  ptr_file_.close();
  if (!ptr_file_) THROW(IO, "Error writing pointer file.");
}

void KdMmapCreator::Write_To_Pointer_File(const WmWord* aWord) {
  Pass_Chunk();
  char record[KdPointerTable::kRecordBytes];
  storeS32(record, keyfile_pos_);
  storeS32(record + 4, wrd_file_pos_);
  storeS32(record + 8, word_num_);
  ptr_file_.write(record, sizeof record);
  if (!ptr_file_) THROW(IO, "Error writing to pointer file.");
  wrd_file_.write(reinterpret_cast<const char*>(aWord), aWord->num_bytes());
  if (!wrd_file_) THROW(IO, "Error writing to word file.");
  wrd_file_pos_ += aWord->num_bytes();
  ++num_chunks_;
}

void KdMmapCreator::Append_Words() {
  const auto words = std::make_unique<char[]>(static_cast<std::size_t>(wrd_file_pos_));
  wrd_file_.seekg(0);
  wrd_file_.read(words.get(), wrd_file_pos_);
  wrd_file_.close();
  if (!wrd_file_) THROW(IO, "Error writing to word file.");
  ptr_file_.write(words.get(), wrd_file_pos_);
  if (!ptr_file_) THROW(IO, "Error writing to pointer file.");
}

}  // namespace vandrelle
