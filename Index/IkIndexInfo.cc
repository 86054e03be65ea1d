#include "Index/IkIndexInfo.h"

#include <cstdio>

#include "Index/IkException.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr std::size_t kOldSize = 32;
constexpr std::size_t kSize = 36;

}  // namespace

void IkIndexInfo::read(const char* filename) {
  unsigned char bytes[kSize] = {};
  std::size_t size = 0;
  std::FILE* file = std::fopen(filename, "rb");
  if (file != nullptr) {
    size = std::fread(bytes, 1, kSize, file);
    std::fclose(file);
  }
  if (size != kOldSize && size != kSize) {
    THROW(IkIO, "Couldn't read index information from '" << filename << "'");
  }
  numTerms = loadS32(bytes);
  totalNumChunks = loadS32(bytes + 4);
  numDigestWords = loadS32(bytes + 8);
  mergeMaxWords = loadS32(bytes + 12);
  mergeMaxDocs = loadS32(bytes + 16);
  bufferSize = loadS32(bytes + 20);
  minDocumentLength = loadFloat(bytes + 24);
  similarityVersion = loadS32(bytes + 28);
  numDeletedChunks = size == kSize ? loadS32(bytes + 32) : 0;
}

void IkIndexInfo::write(const char* filename) const {
  unsigned char bytes[kSize];
  storeS32(bytes, numTerms);
  storeS32(bytes + 4, totalNumChunks);
  storeS32(bytes + 8, numDigestWords);
  storeS32(bytes + 12, mergeMaxWords);
  storeS32(bytes + 16, mergeMaxDocs);
  storeS32(bytes + 20, bufferSize);
  storeFloat(bytes + 24, minDocumentLength);
  storeS32(bytes + 28, similarityVersion);
  storeS32(bytes + 32, numDeletedChunks);

  if (!SysTools::writeFile(filename, bytes, kSize)) {
    THROW(IkIO, "Couldn't write index information to '" << filename << "'");
  }
}

}  // namespace vandrelle
