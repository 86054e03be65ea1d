// A temporary file of the term accumulator (layout in IkTempfile.h) as a source
// of the merger. The file is mapped; words are answered in place.
#pragma once

#include <cstdint>
#include <string>

#include "Index/IkMergeObject.h"
#include "Tool/SysTools.h"

namespace vandrelle {

class IkMergeTempfile : public IkMergeObject {
 public:
  // `proxName` names the parallel file of positions; null without.
  // Throws _Exception_Ik when the file can't be mapped.
  IkMergeTempfile(const char* filename, const char* proxName);
  ~IkMergeTempfile() override;

  void reset() override;
  const WmWord* word() override;
  int maxElements() override;
  void unpack(int* row, int rowSize, int* total_num, IkProxCreator* prox) override;
  void unpackSparse(IkDocumentInfo* start, int* total_num, IkProxCreator* prox) override;

 private:
  [[noreturn]] void damaged(const char* what) const;
  // Hands each pair of the row to `take`(chunk, count).
  template <typename Take>
  void eachPair(Take take);
  // Copies `freq` positions of one chunk, of which former sources have copied
  // `before`: above 0 their run goes on.
  void appendProximity(IkProxCreator* out, int freq, int before);

  std::string name_;
  SysToolsMapObject map_;
  const unsigned char* next_ = nullptr;  // behind what was read last
  const unsigned char* end_ = nullptr;
  std::uint32_t currentSize_ = 0;  // bytes of the current row
};

}  // namespace vandrelle
