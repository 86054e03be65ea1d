#include "Index/IkTransposeCreator.h"

#include <sys/stat.h>

#include <memory>

#include "Index/IkDataFileBinder.h"
#include "Index/IkDigestBuilder.h"
#include "Index/IkException.h"
#include "Index/IkTranspose.h"
#include "KeyFile.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Storage/StFileStorage.h"
#include "Tool/ByteOrder.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

// The lengths of the documents' vectors, one for each of `chunks` documents.
std::vector<float> readSums(const char* filename, int chunks) {
  const std::size_t count = static_cast<std::size_t>(chunks);
  std::FILE* file = std::fopen(filename, "rb");
  if (file == nullptr) THROW(Ik, "Can't bind to .sum file during transpose creation");
  // The count is taken at its word only if the file has as much.
  struct stat status;
  bool whole = ::fstat(::fileno(file), &status) == 0 && status.st_size >= std::int64_t{chunks} * 4;
  std::vector<unsigned char> bytes(whole ? count * 4 : 0);
  if (whole && count > 0) whole = std::fread(bytes.data(), 4, count, file) == count;
  std::fclose(file);
  if (!whole) THROW(Ik, "The file '" << filename << "' ends before its last document");
  std::vector<float> sums(count);
  loadFloats(bytes.data(), count, sums.data());
  return sums;
}

}  // namespace

IkTransposeCreator::IkTransposeCreator(const char* rootname) : IkCreatorImpl(rootname) {}

void IkTransposeCreator::makeIndex() {
  IkDataFileBinder rows;
  // They are read from first to last.
  rows.bind(name_.suffix(nullptr), 0, StFileStorage::IsOneFile(name_.suffix(".dat")));
  std::unique_ptr<KdFileAccessor> keyfile(
      KfKeyFileManager::KdBind(name_.suffix(nullptr), kKdMapped));
  info_.read(name_.suffix(".info"));
  if (info_.totalNumChunks < 0 || info_.numDigestWords < 0 ||
      info_.numDigestWords > IkDigestBuilder::kMaxDigestSize) {
    THROW(Ik, "The file '" << name_.suffix(".info") << "' holds a count out of range");
  }
  const std::vector<float> sums = readSums(name_.suffix(".sum"), info_.totalNumChunks);
  IkTranspose transpose(info_.totalNumChunks, info_.numDigestWords);
  transpose.create(&rows, keyfile.get(), sums.data(), name_.suffix(".trp"), transposeCache_);
}

void IkTransposeCreator::addTerm(const WmWord*, int, int) {
  THROW(Ik, "IkTransposeCreator::addTerm(const WmWord*, int, int) is unimplemented");
}

}  // namespace vandrelle
