// The one interface through which an index is built and changed. It holds the
// options, knows the stages and makes the right creator for each.
//
//   stage 1   documents to temporary files       IkIndexer
//   stage 2   temporary files to the index       IkIndexer
//   stage 3   digests of the documents           IkTransposeCreator
//
// Nothing is held between stages but the files: they can run one by one, in
// separate processes, or together by create().
#pragma once

namespace vandrelle {

class DcDocumentManager;
class FdBag;
class IkIndexBinder;
class IkMergeDeleter;

class IkIndex {
 public:
  virtual ~IkIndex();

  // Stages 1 to 3 over documents `first_doc` to `last_doc`; a `last_doc` of 0
  // means the last there is.
  virtual void create(int first_doc, int last_doc) = 0;
  // Writes temporary files from number `tmpfilenum` on, and <root>.info.
  virtual void create_stage1(int tmpfilenum, int first_doc, int last_doc) = 0;
  // Merges the files that the bag names by its keys; absent ones are passed over.
  virtual void create_stage2(FdBag* tmpfilenames) = 0;
  virtual void create_stage12(int first_doc, int last_doc) = 0;
  virtual void create_stage3() = 0;

  // Merges indexes, given by their roots as the bag's keys, into this one: the
  // same documents with different words, or (additive) different documents.
  virtual void merge(FdBag* roots) = 0;
  virtual void mergeAdditive(FdBag* roots, int mergeTranspose, IkMergeDeleter** deleters) = 0;
  virtual void mergeTranspose(FdBag* roots) = 0;

  // Change an index that is built: add documents of the manager, mark documents
  // deleted. freeze() completes the changes since the last one; see IkExtender for
  // how it ends. Throw _Exception_Ik for numbers out of range.
  virtual void extend(int first_doc, int last_doc) = 0;
  virtual void remove(int first_doc, int last_doc) = 0;
  virtual void freeze() = 0;
  virtual void approximateExtend(int first_doc, int last_doc) = 0;
  virtual void approximateRemove(int first_doc, int last_doc) = 0;
  virtual void approximateFreeze() = 0;
  // Folds the frozen changes into a fresh index `newroot`, without digests.
  virtual void reintegrate(const char* newroot) = 0;
  virtual void cleanup() = 0;

  virtual void name(const char* newname) = 0;
  // Not owned; must outlive the stages that read documents.
  virtual DcDocumentManager* documentManager() = 0;
  virtual void documentManager(DcDocumentManager* docmgr) = 0;
  // Sizes the options for the manager's corpus.
  virtual void setOptions(DcDocumentManager* docmgr) = 0;

  virtual int mergeMaxWords() = 0;
  virtual void mergeMaxWords(int words) = 0;
  virtual int mergeMaxDocs() = 0;
  virtual void mergeMaxDocs(int docs) = 0;
  virtual int mergeAllocSize() = 0;
  virtual void mergeAllocSize(int size) = 0;
  virtual int mergeAllocBuckets() = 0;
  virtual void mergeAllocBuckets(int buckets) = 0;
  virtual int bufferSize() = 0;
  virtual void bufferSize(int bytes) = 0;
  virtual int numDigestWords() = 0;
  virtual void numDigestWords(int words) = 0;
  virtual int transposeCache() = 0;
  virtual void transposeCache(int lines) = 0;
  virtual float minDocumentLength() = 0;
  virtual void minDocumentLength(float characters) = 0;
  virtual int similarityVersion() = 0;
  virtual bool createSumfile() = 0;
  virtual void createSumfile(int create) = 0;
  virtual bool createNormfile() = 0;
  virtual void createNormfile(int create) = 0;
  virtual bool recordProximity() = 0;
  virtual void recordProximity(int record) = 0;
  // Step of the progress lines, 0 to 1; 0 means none.
  virtual void showProgress(float freq) = 0;
  virtual int hashbits() = 0;
  virtual void hashbits(int bits) = 0;

  // A new index object, owned by the caller.
  static IkIndex* index();
  static IkIndex* index(const char* rootname);
  // A new read interface on a finished index, without a document manager.
  static IkIndexBinder* bind(const char* rootname);
};

}  // namespace vandrelle
