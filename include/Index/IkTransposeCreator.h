// Stage 3 of a build: reads the rows of a finished index again and writes the
// digests of its documents, <root>.trp (layout in IkTranspose.h).
#pragma once

#include "Index/IkCreatorImpl.h"

namespace vandrelle {

class IkTransposeCreator : public IkCreatorImpl {
 public:
  explicit IkTransposeCreator(const char* rootname);

  // Needs .info, .key, .ptr, .dat and .sum of the root. Throws _Exception_Ik and
  // what the readers of these files throw; then nothing has been written.
  void makeIndex() override;
  // Not offered: throws _Exception_Ik.
  void addTerm(const WmWord* word, int chunk, int pos) override;
};

}  // namespace vandrelle
