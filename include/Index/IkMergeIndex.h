// A finished index as a source of the merger.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "Index/IkDataFileBinder.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkMergeIndexUnpacker.h"
#include "Index/IkMergeObject.h"
#include "Storage/StStoragePos.h"

namespace vandrelle {

class IkMergeIndexExcluder;
class KdFileAccessor;

class IkMergeIndex : public IkMergeObject {
 public:
  // Opens the index `rootname`, its positions only with `recordProximity`.
  // `newWordNumbersFile`, if not null, is written anew: a 4-byte big-endian
  // integer for each word of the index in order, its number in the target or -1.
  // Throws _Exception_Ik when that can't be opened, and what the readers throw.
  IkMergeIndex(const char* rootname, const char* newWordNumbersFile, int recordProximity);
  ~IkMergeIndex() override;

  // Where the merge into the index `root` notes the new word numbers of source
  // `source`.
  static std::string newWordNumbersFile(const std::string& root, int source);

  void reset() override;
  const WmWord* word() override;
  int maxElements() override;
  int numDeleted() override { return info_.numDeletedChunks; }
  void unpack(int* row, int rowSize, int* total_num, IkProxCreator* prox) override;
  void unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator* prox) override;
  void newWordNumber(int n) override;

  const IkIndexInfo& info() const { return info_; }

  // Added to every chunk number.
  void offset(int offset) { source_.offset = offset; }
  // Not owned; null leaves nothing out.
  void excluder(IkMergeIndexExcluder* excluder) { excluder_ = excluder; }
  void deleter(IkMergeDeleter* deleter) { source_.deleter = deleter; }

 private:
  bool readWord();
  bool readOffset();
  bool isExcluded();
  void seekRow();
  template <typename Unpacker>
  void unpackRow(Unpacker* unpacker);
  [[noreturn]] static void sideFileFailed();

  IkIndexInfo info_;
  int currentWord_ = 0;  // number of the next word of the key file
  int maxWords_ = 0;
  StStoragePos currentOffset_;  // of the current row
  std::unique_ptr<KdFileAccessor> keyfile_;
  std::unique_ptr<IkDataFileBinder> matrixData_;
  IkMergeSource source_;
  IkMergeIndexExcluder* excluder_ = nullptr;
  WmLocalWord word_;
  std::FILE* newWordNumbers_ = nullptr;
};

}  // namespace vandrelle
