// The implementation of IkIndex.
#pragma once

#include <memory>

#include "Index/IkIndex.h"
#include "Index/IkIndexInfo.h"
#include "Tool/NameManager.h"

namespace vandrelle {

class IkCreatorImpl;
class IkExtender;

class IkIndexImpl : public IkIndex {
 public:
  IkIndexImpl();
  explicit IkIndexImpl(const char* rootname);
  // A change that wasn't frozen is dropped.
  ~IkIndexImpl() override;

  void create(int first_doc, int last_doc) override;
  void create_stage1(int tmpfilenum, int first_doc, int last_doc) override;
  void create_stage2(FdBag* tmpfilenames) override;
  void create_stage12(int first_doc, int last_doc) override;
  void create_stage3() override;
  void merge(FdBag* roots) override;
  void mergeAdditive(FdBag* roots, int mergeTranspose, IkMergeDeleter** deleters) override;
  void mergeTranspose(FdBag* roots) override;
  void extend(int first_doc, int last_doc) override;
  void remove(int first_doc, int last_doc) override;
  void freeze() override;
  void approximateExtend(int first_doc, int last_doc) override;
  void approximateRemove(int first_doc, int last_doc) override;
  void approximateFreeze() override;
  void reintegrate(const char* newroot) override;
  void cleanup() override;

  void name(const char* newname) override { name_.base(newname); }
  DcDocumentManager* documentManager() override { return docmgr_; }
  void documentManager(DcDocumentManager* docmgr) override { docmgr_ = docmgr; }
  void setOptions(DcDocumentManager* docmgr) override;

  int mergeMaxWords() override { return info_.mergeMaxWords; }
  void mergeMaxWords(int words) override { info_.mergeMaxWords = words; }
  int mergeMaxDocs() override { return info_.mergeMaxDocs; }
  void mergeMaxDocs(int docs) override { info_.mergeMaxDocs = docs; }
  int mergeAllocSize() override { return mergeAllocSize_; }
  void mergeAllocSize(int size) override { mergeAllocSize_ = size; }
  int mergeAllocBuckets() override { return mergeAllocBuckets_; }
  void mergeAllocBuckets(int buckets) override { mergeAllocBuckets_ = buckets; }
  int bufferSize() override { return info_.bufferSize; }
  void bufferSize(int bytes) override { info_.bufferSize = bytes; }
  int numDigestWords() override { return info_.numDigestWords; }
  void numDigestWords(int words) override { info_.numDigestWords = words; }
  int transposeCache() override { return transposeCache_; }
  void transposeCache(int lines) override { transposeCache_ = lines; }
  float minDocumentLength() override { return info_.minDocumentLength; }
  void minDocumentLength(float characters) override { info_.minDocumentLength = characters; }
  int similarityVersion() override { return info_.similarityVersion; }
  bool createSumfile() override { return createSumfile_; }
  void createSumfile(int create) override { createSumfile_ = create != 0; }
  bool createNormfile() override { return createNormfile_; }
  void createNormfile(int create) override { createNormfile_ = create != 0; }
  bool recordProximity() override { return recordProximity_; }
  void recordProximity(int record) override { recordProximity_ = record != 0; }
  void showProgress(float freq) override { progress_freq_ = freq; }
  int hashbits() override { return hashbits_; }
  void hashbits(int bits) override { hashbits_ = bits; }

 private:
  // Copies info_, the transposition cache and the progress step.
  void updateCreator(IkCreatorImpl* creator) const;
  void copyFlags(IkCreatorImpl* creator) const;
  void mergeImpl(FdBag* roots, bool additive, bool mergeTrp, IkMergeDeleter** deleters);
  // The change in progress; begins one if there is none.
  IkExtender* extender();
  // Removes what earlier changes of this root left, and drops the one in progress.
  void deleteIncrementalFiles();
  void deleteFile(const char* filename);

  NameManager name_;
  IkIndexInfo info_;
  int transposeCache_ = 0;  // lines while creating; 0: build in memory
  float progress_freq_ = 0;
  int mergeAllocSize_ = 8;        // kept and reported only
  int mergeAllocBuckets_ = 4096;  // kept and reported only
  int hashbits_ = 0;
  bool createSumfile_ = true;
  bool createNormfile_ = true;
  bool recordProximity_ = true;
  DcDocumentManager* docmgr_ = nullptr;
  std::unique_ptr<IkExtender> extender_;  // from the first change to freeze()
};

}  // namespace vandrelle
