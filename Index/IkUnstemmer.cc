#include "Index/IkUnstemmer.h"

#include "Fast/FiStemTable.h"
#include "Index/IkIdfCache.h"

namespace vandrelle {

void IkUnstemmer::find(const WmWord& stem, Tree& tree, int maxCount) {
  FdVector<WmMagicWord> words;
  stemTable_->find(stem, words);
  for (int i = 0; i < words.numElements(); ++i) {
    const WmMagicWord& word = *words[i];
    tree.insert({idfCache_->idf(*word), word});
    while (tree.size() > maxCount && tree.removeBot()) {
    }
  }
}

}  // namespace vandrelle
