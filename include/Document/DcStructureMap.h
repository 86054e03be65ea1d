// Where the structure of an index's documents would be asked for. The index
// classes hold a pointer to one; there is no concrete map.
#pragma once

namespace vandrelle {

class DcStructureMap {
 public:
  virtual ~DcStructureMap() = default;
  virtual int numChunks() = 0;
  virtual int structure(int chunk, int level, int* result) = 0;
};

}  // namespace vandrelle
