#include "Index/IkIndexImpl.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "Document/DcDocumentManager.h"
#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Index/IkException.h"
#include "Index/IkExtender.h"
#include "Index/IkFamily.h"
#include "Index/IkIndexer.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkReintegrator.h"
#include "Index/IkTransposeCreator.h"
#include "Tool/SysTools.h"

namespace vandrelle {

namespace {

// What the digests of a corpus may take in memory, and the fixed number of cache
// lines beyond it.
constexpr std::int64_t kTransposeBytes = 0x500000;
constexpr int kTransposeLines = 50000;

}  // namespace

IkIndex::~IkIndex() = default;

IkIndex* IkIndex::index() { return new IkIndexImpl; }

IkIndex* IkIndex::index(const char* rootname) { return new IkIndexImpl(rootname); }

IkIndexBinder* IkIndex::bind(const char* rootname) {
  return new IkLocalIndexBinder(rootname, nullptr);
}

IkIndexImpl::IkIndexImpl() {
  info_.numTerms = 0;
  info_.totalNumChunks = 0;
  info_.numDigestWords = 32;
  info_.mergeMaxWords = 70000;
  info_.mergeMaxDocs = 2500;
  info_.bufferSize = 32768;
  info_.minDocumentLength = 400.0f;
  info_.similarityVersion = 0;
  info_.numDeletedChunks = 0;
}

IkIndexImpl::~IkIndexImpl() = default;

IkIndexImpl::IkIndexImpl(const char* rootname) : IkIndexImpl() { name_.base(rootname); }

void IkIndexImpl::updateCreator(IkCreatorImpl* creator) const {
  creator->info(&info_);
  creator->transposeCache(transposeCache_);
  creator->showProgress(progress_freq_);
}

void IkIndexImpl::copyFlags(IkCreatorImpl* creator) const {
  creator->createSumfile(createSumfile_);
  creator->createNormfile(createNormfile_);
  creator->recordProximity(recordProximity_);
}

void IkIndexImpl::create(int first_doc, int last_doc) {
  create_stage12(first_doc, last_doc);
  create_stage3();
}

void IkIndexImpl::create_stage1(int tmpfilenum, int first_doc, int last_doc) {
  if (docmgr_ == nullptr) THROW(Ik, "Can't create_stage1 with a NULL document manager");
  deleteIncrementalFiles();
  IkIndexer indexer(name_.suffix(nullptr));
  updateCreator(&indexer);
  if (SysTools::fileExists(name_.suffix(".info"))) indexer.readInfo();
  indexer.hashbits(hashbits_);
  copyFlags(&indexer);
  indexer.startfilenum(tmpfilenum);
  indexer.addDocuments(docmgr_, first_doc, last_doc);
  indexer.flushTempfiles();
  indexer.writeInfo();
}

void IkIndexImpl::create_stage2(FdBag* tmpfilenames) {
  IkIndexer indexer(name_.suffix(nullptr));
  updateCreator(&indexer);
  indexer.readInfo();
  copyFlags(&indexer);
  std::unique_ptr<FdStream> names(tmpfilenames->iterator());
  for (names->reset(); names->more(); names->next()) {
    const char* name = static_cast<const char*>(names->key());
    if (SysTools::fileExists(name)) indexer.addTempfile(name);
  }
  indexer.makeIndexExplicitTempfiles();
}

void IkIndexImpl::create_stage12(int first_doc, int last_doc) {
  if (docmgr_ == nullptr) THROW(Ik, "Can't create_stage12 with a NULL document manager");
  deleteIncrementalFiles();
  IkIndexer indexer(name_.suffix(nullptr));
  updateCreator(&indexer);
  indexer.hashbits(hashbits_);
  copyFlags(&indexer);
  indexer.addDocuments(docmgr_, first_doc, last_doc);
  // The last term of all may be the one that had the table written out.
  indexer.makeIndexOfRun();
}

void IkIndexImpl::create_stage3() {
  IkTransposeCreator creator(name_.suffix(nullptr));
  updateCreator(&creator);
  creator.makeIndex();
}

void IkIndexImpl::merge(FdBag* roots) { mergeImpl(roots, false, false, nullptr); }

void IkIndexImpl::mergeAdditive(FdBag* roots, int mergeTranspose, IkMergeDeleter** deleters) {
  mergeImpl(roots, true, mergeTranspose != 0, deleters);
}

IkExtender* IkIndexImpl::extender() {
  if (extender_ == nullptr) {
    extender_ = std::make_unique<IkExtender>(name_.suffix(nullptr));
    extender_->hashbits(hashbits_);
    extender_->showProgress(progress_freq_);
  }
  return extender_.get();
}

void IkIndexImpl::extend(int first_doc, int last_doc) {
  if (docmgr_ == nullptr) THROW(Ik, "Can't create_stage12 with a NULL document manager");
  extender()->addDocuments(docmgr_, first_doc, last_doc);
}

void IkIndexImpl::remove(int first_doc, int last_doc) {
  IkExtender* const creator = extender();
  for (int chunk = first_doc; chunk <= last_doc; ++chunk) creator->deleteDocument(chunk);
}

void IkIndexImpl::freeze() {
  if (extender_ == nullptr) THROW(Ik, "Can't freeze index: no documents added or deleted");
  // However it ends, the change is over.
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    extender_->makeIndex();
    environment.restore_env();
    extender_.reset();
  } else {
    environment.restore_env();
    extender_.reset();
    ExceptionManager::instance()->do_throw();
  }
}

void IkIndexImpl::approximateExtend(int, int) {
  THROW(Ik, "IkIndexImpl::approximateExtend() is not yet implemented");
}

void IkIndexImpl::approximateRemove(int, int) {
  THROW(Ik, "IkIndexImpl::approximateRemove() is not yet implemented");
}

void IkIndexImpl::approximateFreeze() {
  THROW(Ik, "IkIndexImpl::approximateFreeze() is not yet implemented");
}

void IkIndexImpl::reintegrate(const char* newroot) {
  IkReintegrator creator(name_.suffix(nullptr), newroot);
  creator.makeIndex();
}

void IkIndexImpl::cleanup() { THROW(Ik, "IkIndexImpl::cleanup() is not yet implemented"); }

// A change that was begun is one of the former index.
void IkIndexImpl::deleteIncrementalFiles() {
  extender_.reset();
  for (const char* suffix : kIkChangeSuffixes) deleteFile(name_.suffix(suffix));
}

void IkIndexImpl::deleteFile(const char* filename) {
  if (SysTools::fileExists(filename) && !SysTools::removeFile(filename)) {
    THROW(Ik, "Can't delete file '" << filename << "'");
  }
}

void IkIndexImpl::setOptions(DcDocumentManager* docmgr) {
  const auto corpusSize = docmgr->corpusSize();
  const int numDocs = docmgr->numDocuments();
  if (corpusSize < 1) return;
  info_.mergeMaxDocs = std::max(numDocs / 40, 5000);
  info_.mergeMaxWords = 60000;
  info_.bufferSize = corpusSize > 400000   ? 524288
                     : corpusSize > 200000 ? 262144
                     : corpusSize > 100000 ? 131072
                     : corpusSize > 50000  ? 65536
                                           : 32768;
  const std::int64_t digestEntries = std::int64_t{info_.numDigestWords} * 3 * std::int64_t{numDocs};
  if (digestEntries > kTransposeBytes) {
    // The two limits measure different sizes, and past the second it is the
    // fixed number of lines that holds, whatever the size of a digest.
    transposeCache_ = static_cast<int>(std::int64_t{numDocs} * 9 / 16);
    if (transposeCache_ > kTransposeBytes / (std::int64_t{info_.numDigestWords} * 5)) {
      transposeCache_ = kTransposeLines;
    }
  }
}

}  // namespace vandrelle
