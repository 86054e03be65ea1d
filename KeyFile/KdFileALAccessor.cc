#include "KeyFile/KdFileALAccessor.h"

#include <fstream>

#include "KeyFile/KdStreamImpl.h"

namespace vandrelle {

std::vector<unsigned char> KdReadWholeFile(std::ifstream* file) {
  file->clear();
  file->seekg(0, std::ios::end);
  const std::streamoff bytes = file->tellg();
  std::vector<unsigned char> content;
  // A folder tells an endless size.
  if (bytes <= 0 || bytes > INT32_MAX) return content;
  content.resize(static_cast<std::size_t>(bytes));
  file->seekg(0);
  file->read(reinterpret_cast<char*>(content.data()), bytes);
  if (!*file) content.clear();
  return content;
}

bool KdFileALAccessor::Read_Pointers(const unsigned char* from, std::size_t bytes, int32 num_chunks,
                                     std::vector<unsigned char>* records,
                                     std::vector<unsigned char>* words) {
  constexpr std::size_t kFixedBytes = 10;  // of a record, without the letters
  if (num_chunks < 0 || static_cast<std::size_t>(num_chunks) > bytes / kFixedBytes) return false;
  records->reserve(static_cast<std::size_t>(num_chunks) * KdPointerTable::kRecordBytes);
  for (int32 i = 0; i < num_chunks; ++i) {
    if (bytes < kFixedBytes) return false;
    const int letters = loadS16(from + 4);
    if (letters < 0 || letters > kKdMaxLetters ||
        bytes - kFixedBytes < static_cast<std::size_t>(letters)) {
      return false;
    }
    unsigned char record[KdPointerTable::kRecordBytes];
    std::memcpy(record, from, 4);
    storeS32(record + 4, static_cast<int32>(words->size()));
    std::memcpy(record + 8, from + 6 + letters, 4);
    records->insert(records->end(), record, record + sizeof record);
    words->push_back(static_cast<unsigned char>(letters));
    words->insert(words->end(), from + 6, from + 6 + letters);
    from += kFixedBytes + static_cast<std::size_t>(letters);
    bytes -= kFixedBytes + static_cast<std::size_t>(letters);
  }
  return true;
}

KdFileALAccessor::KdFileALAccessor(std::ifstream* ptr_file, int keyfile_fd, KdDataPlace place)
    : KdChunkAccessor(keyfile_fd) {
  const std::vector<unsigned char> content = KdReadWholeFile(ptr_file);
  if (content.size() < KdHeader::kBytes) fail("Error reading pointer file.");
  const KdHeader header = KdHeader::load(content.data());
  if (header.type < kKdPackedVarying || header.type > kKdInline)
    fail("Unrecognized pointer file type.");
  layout_ = {place, header.type >= kKdConstant, 0};
  if (!Read_Pointers(content.data() + KdHeader::kBytes, content.size() - KdHeader::kBytes,
                     header.num_chunks, &records_, &words_)) {
    fail("Error reading pointer file.");
  }
  bindTable(header, records_.data(), words_.data(), static_cast<int64_t>(words_.size()));
}

KdFileALAccessor::~KdFileALAccessor() { Close_Keyfile(); }

void KdFileALAccessor::fail(const char* text, const char* detail, const char* source, int line) {
  THROW_FROM(KdAccess, source, line, text << detail);
}

KdStream* KdFileALAccessorCon::iterator() { return new KdStreamCon(this); }
KdStream* KdFileALAccessorVar::iterator() { return new KdStreamVar(this); }
KdStream* KdInlineAcc::iterator() { return new KdStreamInline(this); }

}  // namespace vandrelle
