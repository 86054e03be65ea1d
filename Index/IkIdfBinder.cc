#include "Index/IkIdfBinder.h"

#include <sys/stat.h>

#include "Index/IkException.h"
#include "Index/IkSimilarity.h"

namespace vandrelle {

IkIdfBinder::IkIdfBinder(const IkIndexInfo* info, const char* name) {
  // The file of an index without words is empty, and nothing empty is mapped.
  struct stat status;
  if (::stat(name, &status) != 0 || status.st_size != 0) {
    map_.bind(name);
    values_ = static_cast<const unsigned char*>(map_.addr());
    size_ = static_cast<unsigned>(map_.len());
  }

  IkSimilarity sim;
  sim.bind(info);
  const float step = sim.idfCache[1] / 255.0f;
  for (int i = 0; i < 256; ++i) {
    idfs_[i] = static_cast<float>(i) * step;
    dfs_[i] = sim.InverseIDF(idfs_[i]);
  }
}

void IkIdfBinder::pastEnd(unsigned word) const {
  THROW(Ik, "Word " << word << " is past the end of an idf file of " << size_ << " words");
}

}  // namespace vandrelle
