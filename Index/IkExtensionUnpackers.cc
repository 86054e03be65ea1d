#include "Index/IkExtensionUnpackers.h"

#include "Index/IkException.h"

namespace vandrelle {

void IkCalculateSums::action(int doc_num, int doc_freq, float idf) {
  if (static_cast<unsigned>(doc_num) >= static_cast<unsigned>(numDocs_)) {
    THROW(Ik, "Document " << doc_num << " is outside of an index of " << numDocs_ << " documents");
  }
  const float squaredFrequency = static_cast<float>(static_cast<long long>(doc_freq) * doc_freq);
  sums_[doc_num] += squaredFrequency * (idf * idf);
}

}  // namespace vandrelle
