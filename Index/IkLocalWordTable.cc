#include "Index/IkLocalWordTable.h"

#include "Index/IkException.h"
#include "KeyFile.h"
#include "Word.h"

namespace vandrelle {

IkLocalWordTable::IkLocalWordTable(KdFileAccessor* keyfile, IkDataExtender* extender)
    : wordbuf_{},
      word_(reinterpret_cast<WmWord*>(wordbuf_)),
      wordsInKeyfile_(keyfile->Num_Entries()),
      keyfile_(keyfile),
      extender_(extender) {}

int IkLocalWordTable::lookup(const WmWord* word, StStoragePos& position) {
  unsigned char value[kMaxDataSize];
  const int32 size = lookupData(keyfile_, word, value);
  if (size < 0) return 0;
  position = pos(value, size);
  return 1;
}

int32 IkLocalWordTable::lookupData(KdFileAccessor* keyfile, const WmWord* word,
                                   unsigned char* value) {
  if (keyfile->Data_Size() > kMaxDataSize) {
    THROW(Ik, "A word table has " << keyfile->Data_Size() << " bytes of data a word");
  }
  int32 size = 0;
  return keyfile->Lookup(word, &size, value) ? size : -1;
}

int IkLocalWordTable::wordNum(const WmWord* word) {
  int32 num = 0;
  return keyfile_->Lookup(word, &num) ? num : -1;
}

const WmWord* IkLocalWordTable::word(int num) {
  if (num < 0 || num >= wordsInKeyfile_) return nullptr;
  return keyfile_->Lookup(num, word_) ? word_ : nullptr;
}

StStoragePos IkLocalWordTable::pos(const void* data, int32 size) {
  if (size != 4 && size != kDataSize) THROW(Ik, "The position of a row has " << size << " bytes");
  const uint32 high = size == kDataSize ? static_cast<const unsigned char*>(data)[4] : 0u;
  return StStoragePos(high, loadU32(data));
}

void IkLocalWordTable::storePos(unsigned char* data, const StStoragePos& position) {
  storeU32(data, position.Lo());
  data[4] = static_cast<unsigned char>(position.Hi());
}

}  // namespace vandrelle
