// The binder of an index on disk: a family of files around one root name, each
// opened when it is first asked for and kept until the binder goes.
//
//   suffix                 content                              written by
//   .info                  counts and options                   the creators
//   .key .ptr              the word table                       IkCreatorImpl
//   .dat                   rows                                 IkCreatorImpl
//   .idf                   coded idf of each word               IkCreatorImpl
//   .sum                   length of each document's vector     IkCreatorImpl
//   .norm .norm.raw        norms of the documents               IkCreatorImpl
//   .prx .prx.map          word positions and their map         IkCreatorImpl
//   .trp                   digests of the documents             IkTransposeCreator
//   .tmpNNN .prxNNN        temporary files                      IkIndexer
//   .tmp.NNNN              new word numbers, while merging      IkMergeIndex
//   .xidx.*                rows added later                     IkDataExtenderIndex
//   .xk                    deleted documents                    IkDeleterVector
//   .latest.info           a later count of documents           -
//   .unstem                surface words of the stems           the driver
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Index/IkIndexBinder.h"
#include "Index/IkIndexInfo.h"
#include "Tool/NameManager.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class DcDocumentManager;
class DcStructureMap;
class FiStemTable;
class IkDataFileBinder;
class IkIdfBinder;
class IkIdfCache;
class IkLocalRetriever;
class IkProxBinder;
class IkUnstemmer;
class KdFileAccessor;
class QaBinder;

DESCRIPTOR_CHILD(IkLocalIndexBinder, IkIndexBinder);

class IkLocalIndexBinder : public IkIndexBinder {
  DESCRIBED(IkLocalIndexBinder)

  // Opens nothing. Doesn't own `doc`, which may be null.
  IkLocalIndexBinder(const char* rootname, DcDocumentManager* doc);
  ~IkLocalIndexBinder() override;
  IkLocalIndexBinder(const IkLocalIndexBinder&) = delete;
  IkLocalIndexBinder& operator=(const IkLocalIndexBinder&) = delete;

  // Everything handed out stays owned by the binder. The first use of each opens
  // files, and throws what they throw when they are missing or damaged.
  IkIndexInfo* info() override;
  IkWordTable* wordTable() override;
  // Without <root>.trp the digests are computed from the documents.
  IkTranspose* transpose() override;
  // Both give the same retriever. It serves one query at a time.
  IkRetriever* retriever() override;
  IkLocalRetriever* localRetriever();

  // How the first call opened them is how they stay.
  IkDataFileBinder* indexData(int writable, int mmapped);
  KdFileAccessor* keyfile() { return keyfile(0); }
  KdFileAccessor* keyfile(int mapped);

  // One entry a document, of either. Null for an index without documents.
  const unsigned char* normfile();
  const float* sumfile();

  IkIdfBinder* idfBinder();
  IkIdfCache* idfCache();
  FiStemTable* stemTable();
  // Has the index an unstemming table? Without one stemTable() and unstemmer() throw.
  bool hasStemTable();
  IkUnstemmer* unstemmer();
  // Has the index the positions of its words? Without them positions() throws.
  bool hasPositions();
  IkProxBinder* positions();
  // Null for an index without the files of a query accelerator. `map` is non-zero
  // for mapping them.
  QaBinder* queryAccelBinder(int map);

  DcDocumentManager* documentManager() const { return docmgr_; }
  // Not owned. To be set before the first indexData().
  void structureMap(DcStructureMap* map) { structureMap_ = map; }
  // Lines of the cache of digests, 0 for mapping the file. To be set before the
  // first transpose().
  int transposeCacheSize() const { return transposeCacheSize_; }
  void transposeCacheSize(int lines) { transposeCacheSize_ = lines; }

  // An aid for tests: removes the files that begin with the root name, as long
  // as their directory lies under the safe path ("/tmp" unless changed). 0, or
  // -1 for a root without a name or a directory that can't be read.
  int cleanupFiles();
  void safeCleanupPath(const char* path) { safePath_ = path; }
  // Does a directory, links and dots resolved, lie under the safe path? Any does
  // under an empty one, and none that isn't there under another.
  bool isUnderSafePath(const char* directory) const;

 private:
  int transposeEntrySize(const std::string& filename);

  NameManager name_;
  DcDocumentManager* docmgr_;
  std::unique_ptr<IkDataFileBinder> indexData_;
  std::unique_ptr<KdFileAccessor> keyfile_;
  std::unique_ptr<IkIndexInfo> info_;
  std::unique_ptr<SysToolsMapObject> normmap_;
  std::unique_ptr<std::vector<float>> sumfile_;  // in the host's byte order
  std::unique_ptr<IkWordTable> wordTable_;
  std::unique_ptr<IkIdfBinder> idfBinder_;
  std::unique_ptr<IkIdfCache> idfCache_;
  std::unique_ptr<IkTranspose> transpose_;
  std::unique_ptr<FiStemTable> stemTable_;
  std::unique_ptr<IkUnstemmer> unstemmer_;
  std::unique_ptr<IkProxBinder> positions_;
  std::unique_ptr<QaBinder> queryAccelBinder_;
  std::unique_ptr<IkLocalRetriever> retriever_;
  int transposeCacheSize_ = 128;
  DcStructureMap* structureMap_ = nullptr;
  std::string safePath_ = "/tmp";
};

}  // namespace vandrelle
