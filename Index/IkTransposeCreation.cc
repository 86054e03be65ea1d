// The creation of the table of digests, the one writing operation of IkTranspose.

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <new>

#include "Index/IkDataFileBinder.h"
#include "Index/IkDataFileTransposeUnpacker.h"
#include "Index/IkException.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkTranspose.h"
#include "Index/IkTransposeCache.h"
#include "Index/IkTransposeLoader.h"
#include "KeyFile.h"
#include "Tool/SysTools.h"
#include "Word.h"

namespace vandrelle {

namespace {

constexpr int kFallbackRange = 10000;

}  // namespace

void IkTranspose::create(IkDataFileBinder* databinder, KdFileAccessor* keyfile, const float* sum,
                         const char* filename, int cacheSize) {
  if (numDocs_ == 0 || digestSize_ == 0) THROW(IkTranspose, "Transposition is uninitialized");
  cacheSize = std::abs(cacheSize);
  if (cacheSize == 0) {
    const std::size_t bytes =
        static_cast<std::size_t>(numDocs_) * static_cast<std::size_t>(digestSize_) * kEntryBytes;
    memory_.reset(new (std::nothrow) unsigned char[bytes]());
    data_ = memory_.get();
    if (data_ == nullptr) {
      std::cerr << "Warning: couldn't allocate space for transpose table.\n"
                   "The table is built in parts; performance will be degraded.\n";
      cacheSize = kFallbackRange;
    }
  }
  if (cacheSize != 0) {
    std::cerr << "Caching: size=" << cacheSize << '\n';
    auto loader = std::make_unique<IkTransposeLoaderFile>(filename, digestSize_, 1, 0);
    loader->zeroFill(numDocs_);
    externalCache(loader.release(), std::min(cacheSize, numDocs_));
  }

  const int rangeSize = cacheSize != 0 ? cacheSize : numDocs_;
  for (int first = 0; first < numDocs_; first += rangeSize) {
    const int last = std::min(numDocs_ - first, rangeSize) + first - 1;
    createRange(databinder, keyfile, sum, first, last);
    if (cache_) cache_->flush();
  }

  if (cache_) {
    cache_.reset();
    loader_.reset();
  } else {
    writeTable(filename);
    data_ = nullptr;
    memory_.reset();
  }
}

void IkTranspose::createRange(IkDataFileBinder* databinder, KdFileAccessor* keyfile,
                              const float* sum, int first, int last) {
  IkDigestBuilder digests(last - first + 1, digestSize_);
  IkDataFileTransposeUnpacker unpacker(first, last, &digests, sum);
  std::unique_ptr<KdStream> words(keyfile->iterator());
  int wordnum = 0;
  for (words->reset(); words->more(); words->next(), ++wordnum) {
    // Special terms are counted and stay out of digests.
    if (words->key()->letter(0) == ' ') continue;
    const StStoragePos position = IkLocalWordTable::pos(words->data(), words->dataSize());
    databinder->seek(position);
    if (databinder->tell() != position || !databinder->more()) {
      THROW(Ik, "The row of word=" << *words->key() << " is outside of the row data file");
    }
    unpacker.wordnum(wordnum);
    databinder->unpackRow(&unpacker);
  }
  for (int doc = first; doc <= last; ++doc) {
    digests.store(doc - first, digest(doc));
    touched(doc);
  }
}

void IkTranspose::writeTable(const char* filename) const {
  const std::size_t bytes =
      static_cast<std::size_t>(numDocs_) * static_cast<std::size_t>(digestSize_) * kEntryBytes;
  if (!SysTools::writeFile(filename, data_, bytes)) {
    THROW(IkIO, "Couldn't write the digests to '" << filename << "'");
  }
}

}  // namespace vandrelle
