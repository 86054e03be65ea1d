#include "Document/DcDocumentUtil.h"

#include <istream>
#include <ostream>
#include <string>

#include "Document/DcFileStream.h"
#include "Exception.h"
#include "Tool/HeapText.h"

namespace vandrelle {

char* DcDocumentUtil::intToStr(int number) { return copyText(std::to_string(number)); }

void DcDocumentUtil::write_int32(std::ostream& os, int32 value) {
  char bytes[4];
  storeS32(bytes, value);
  os.write(bytes, sizeof bytes);
}

void DcDocumentUtil::write_int16(std::ostream& os, std::int16_t value) {
  char bytes[2];
  storeS16(bytes, value);
  os.write(bytes, sizeof bytes);
}

int32 DcDocumentUtil::read_int32(std::istream& is) {
  char bytes[4];
  return is.read(bytes, sizeof bytes) ? loadS32(bytes) : -1;
}

std::int16_t DcDocumentUtil::read_int16(std::istream& is) {
  char bytes[2];
  return is.read(bytes, sizeof bytes) ? loadS16(bytes) : std::int16_t{-1};
}

int32 DcDocumentUtil::ReadAtPos(std::ifstream* stream, long pos) {
  if (stream == nullptr) return -1;
  stream->clear();
  stream->seekg(pos);
  const int32 value = read_int32(*stream);
  if (!*stream) stream->clear();
  return value;
}

std::ifstream* DcDocumentUtil::ReadFile(const char* fileName) {
  auto* stream = new DcSourceStream(fileName, DcSourceStream::kRecordWindow);
  if (!stream->good()) {
    delete stream;
    THROW(Fatal, "Can't open file: " << fileName);
  }
  return stream;
}

}  // namespace vandrelle
