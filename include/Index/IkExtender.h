// Changes an index that is built: documents are marked deleted, and new ones are
// added beside the main files (see IkDataExtenderIndex.h). makeIndex() completes a
// change; what it leaves is an index whose rows tell of the change.
//
// An index with deletions is asked as before. One with added documents isn't until
// IkReintegrator has made a whole index of it: new words are not in its word table,
// and the documents have no norms and digests there.
#pragma once

#include <memory>
#include <unordered_set>
#include <vector>

#include "Index/IkCreatorImpl.h"

namespace vandrelle {

class IkDataExtender;
class IkDataFileBinder;
class IkDeleterVector;
class KdFileAccessor;

class IkExtender : public IkCreatorImpl {
 public:
  // Opens the index `rootname`. Throws what the readers of its files throw.
  explicit IkExtender(const char* rootname);
  // Changes that makeIndex() didn't complete are dropped.
  ~IkExtender() override;

  // Adds documents `first` to `last`, which the index hasn't got. Numbers between
  // the last document of the index and `first` become those of deleted documents.
  // Throws _Exception_Ik for numbers out of order.
  void addDocuments(DcDocumentManager* dm, int first, int last) override;
  void addTerm(const WmWord* word, int chunk, int pos) override;
  // Throws _Exception_Ik for a number above that of documents.
  void deleteDocument(int doc_num);
  // Recomputes the weights of all rows and writes them, the lengths of the
  // documents and the header. Ends in a throw: the last step, that would tell
  // readers at work of the change, is dead. All files are written by then.
  void makeIndex() override;

  static constexpr int kMaxRows = 300000;

 protected:
  // Lets go of all files that are open.
  void closeObjects();

 private:
  // Opens the rows.
  void initObjects();
  // Is the current main row one that goes on in the extension, since this change?
  bool isNewlyExtended() const;
  // Hands the whole current row on, what the extension has included.
  void unpackRow(class IkDataFileUnpacker* functor, float idf);
  float liveIdf(int numDocs) const;
  void weighMainRows(std::vector<float>* scales, class IkCalculateSums* sums);
  void weighNewWords(class IkCalculateSums* sums);
  void freeze();
  void unfreeze();
  void updateMatrixData(const float* scales);

  std::unique_ptr<IkDataFileBinder> matrixData_;
  IkDataExtender* extender_ = nullptr;  // owned by matrixData_
  IkDeleterVector* deleter_ = nullptr;  // the like; null until the first deletion
  std::unique_ptr<KdFileAccessor> keyfile_;
  std::unordered_set<uint32> extendBag_;  // offsets of main rows that go on
};

}  // namespace vandrelle
