#include "Index/IkTempfileMerger.h"

#include <unistd.h>

#include "Index/IkDocumentInfo.h"
#include "Index/IkMergeTempfile.h"
#include "Index/IkMerger.h"
#include "Index/IkTempfile.h"

namespace vandrelle {

void IkTempfileMerger::addTempfile(const char* srcfile) {
  if (::access(srcfile, R_OK) == 0) tempfiles_.emplace_back(srcfile);
}

void IkTempfileMerger::merge(const char* dstfile) {
  IkMerger merger(static_cast<int>(tempfiles_.size()));
  for (std::size_t i = 0; i < tempfiles_.size(); ++i) {
    merger.mergeObject(static_cast<int>(i), new IkMergeTempfile(tempfiles_[i].c_str(), nullptr));
  }
  std::vector<int> row(static_cast<std::size_t>(numchunks_));
  merger.row(row.data());
  merger.rowSize(numchunks_);
  IkTempfile merged(dstfile);
  for (merger.reset(); merger.more(); merger.next()) {
    merged.writeWord(merger.word());
    const auto* pairs = reinterpret_cast<const IkDocumentInfo*>(row.data());
    for (int i = 0; i < merger.sparseSize(); ++i) {
      merged.addChunk(pairs[i].chunk, pairs[i].frequency);
    }
    for (int chunk = 0; merger.sparseSize() < 0 && chunk < numchunks_; ++chunk) {
      const int frequency = row[static_cast<std::size_t>(chunk)];
      if (frequency > 0) merged.addChunk(chunk, frequency);
    }
    merged.writeLine();
  }
  merged.writeEOF();
}

}  // namespace vandrelle
