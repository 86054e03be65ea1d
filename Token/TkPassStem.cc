#include "Token/TkStemmer.h"

namespace vandrelle {

WmWord* TkPassStem::stem(const WmWord* word, WmWord* place) {
  if (place == nullptr) return WmWord::Create(*word);
  return place == word ? place : new (place) WmWord(*word);
}

}  // namespace vandrelle
