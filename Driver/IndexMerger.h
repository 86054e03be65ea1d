// Makes one index out of several over different documents: what vandrelleMerge
// does, and what answers is as if one run had indexed all documents in the order
// of the sources.
//
// The new index grows under a root of its own, <root>.tmp.merge, and is moved to
// its place when it is whole, .info last: without that no reader takes the rest for
// an index. Until then a former index of that name stays what it is.
#pragma once

#include <string>
#include <vector>

#include "Tool/NameManager.h"

namespace vandrelle {

class IkMergeDeleter;
class TkStemmer;

class IndexMerger {
 public:
  // `sources` in the order that their documents are to have. Looks at all files
  // that will be read or replaced. Throws, as all operations do, _Exception_Merge
  // with the name of the file that is missing or in the way, and what the parts of
  // an index throw that is damaged.
  IndexMerger(const std::string& root, const std::vector<std::string>& sources);
  IndexMerger(const IndexMerger&) = delete;
  IndexMerger& operator=(const IndexMerger&) = delete;

  // Writes the new index under its working root. With a `stemmer` (not owned; may be
  // null) also the unstemming table.
  void build(TkStemmer* stemmer);
  // Puts it in the place of a former one, which goes only when the new one stands.
  void moveIntoPlace();

  // Removes what there is under the working root of `root`: what a run has left that
  // failed or was cut short. Only once an object has found no source there.
  static void discard(const std::string& root);

  // After build().
  int documents() const { return documents_; }
  int words() const { return words_; }
  long repeatedFiles() const { return repeatedFiles_; }
  // Have only some of the sources positions, and so not the new index?
  bool lostPositions() const { return somePositions_ && !positions_; }

 private:
  void checkSource(const std::string& source);
  void checkTarget() const;
  void mergeDocuments();
  void mergeFields();
  void mergeWords();
  void mergeDigests();
  void mergeDeletions();

  std::string root_;
  std::string workRoot_;
  std::vector<std::string> sources_;
  std::vector<int> counts_;     // documents by source
  bool positions_ = true;       // of all sources
  bool somePositions_ = false;  // of any
  int documents_ = 0;
  int words_ = 0;
  long repeatedFiles_ = 0;
};

}  // namespace vandrelle
