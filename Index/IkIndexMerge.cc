#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Index/IkDataMerger.h"
#include "Index/IkDigestBuilder.h"
#include "Index/IkException.h"
#include "Index/IkIndexImpl.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkMergeIndex.h"
#include "Index/IkTranspose.h"
#include "Index/IkTransposeLoader.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

constexpr int kTargetCache = 8;  // digests of the target kept in memory

// Copies the digests of one source to documents `first` and on of the target.
class DigestCopier {
 public:
  DigestCopier(IkTranspose* target, const SysToolsMapObject* norms)
      : target_(target),
        norms_(static_cast<const unsigned char*>(norms->addr())),
        numNorms_(norms->len()) {}

  // Answers the number of documents of the source.
  int copy(const char* root, const std::string& numbersFile, int first) {
    IkLocalIndexBinder source(root, nullptr);
    numbers_.bind(numbersFile.c_str());
    const int documents = source.info()->totalNumChunks;
    if (documents < 0 ||
        first + std::int64_t{documents} > std::min(target_->numDocs(), numNorms_)) {
      THROW(Ik, "The merged index has fewer documents than its sources");
    }
    // A norm of 0 marks a document without words.
    for (int doc = 0; doc < documents; ++doc) {
      if (norms_[first + doc] != 0) copyDigest(source.transpose(), doc, first + doc);
    }
    numbers_.release();
    return documents;
  }

 private:
  void copyDigest(IkTranspose* source, int from, int to) {
    for (int i = 0; i < source->digestSize(); ++i) {
      // An entry of value 0 is an unused one.
      const std::uint16_t value = source->wordValue(from, i);
      if (value == 0) continue;
      const int number = newNumber(source->wordNum(from, i));
      if (number >= 0) target_->insert(to, number, value);
    }
    target_->sortByWord(to);
  }

  // Negative for a word that the target hasn't got.
  int newNumber(int number) const {
    if (number < 0 || number >= numbers_.len() / 4) {
      THROW(Ik, "A digest names word " << number << ", which its index hasn't got");
    }
    return loadS32(static_cast<const unsigned char*>(numbers_.addr()) + 4 * std::int64_t{number});
  }

  IkTranspose* target_;
  const unsigned char* norms_;
  int numNorms_;
  SysToolsMapObject numbers_;
};

}  // namespace

void IkIndexImpl::mergeImpl(FdBag* roots, bool additive, bool mergeTrp, IkMergeDeleter** deleters) {
  IkDataMerger merger(name_.suffix(nullptr));
  updateCreator(&merger);
  merger.additiveMode(additive);
  copyFlags(&merger);
  const std::unique_ptr<FdStream> names(roots->iterator());
  int i = 0;
  for (names->reset(); names->more(); names->next(), ++i) {
    const std::string side = IkMergeIndex::newWordNumbersFile(name_.suffix(nullptr), i);
    merger.addIndex(static_cast<const char*>(names->key()), mergeTrp ? side.c_str() : nullptr,
                    deleters != nullptr ? deleters[i] : nullptr);
  }
  deleteIncrementalFiles();
  merger.makeIndex();
}

void IkIndexImpl::mergeTranspose(FdBag* roots) {
  IkIndexInfo info;
  info.read(name_.suffix(".info"));
  if (info.totalNumChunks < 0 || info.numDigestWords <= 0 ||
      info.numDigestWords > IkDigestBuilder::kMaxDigestSize) {
    THROW(Ik, "The file '" << name_.suffix(".info") << "' holds a count out of range");
  }
  const std::string filename = name_.suffix(".trp");
  const SysToolsMapObject norms(name_.suffix(".norm"));
  if (norms.len() < info.totalNumChunks) {
    THROW(Ik, "The file '" << name_.suffix(".norm") << "' is too short");
  }
  auto loader =
      std::make_unique<IkTransposeLoaderFile>(filename.c_str(), info.numDigestWords, 1, 0);
  loader->zeroFill(info.totalNumChunks);
  IkTranspose target(info.totalNumChunks, info.numDigestWords);
  target.externalCache(loader.release(), kTargetCache);

  DigestCopier copier(&target, &norms);
  const std::unique_ptr<FdStream> names(roots->iterator());
  int i = 0;
  int first = 0;
  for (names->reset(); names->more(); names->next(), ++i) {
    const auto* root = static_cast<const char*>(names->key());
    const std::string side = IkMergeIndex::newWordNumbersFile(name_.suffix(nullptr), i);
    first += copier.copy(root, side, first);
    SysTools::removeFile(side.c_str());
  }
}

}  // namespace vandrelle
