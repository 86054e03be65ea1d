#include "Token/TkStemmer.h"

#include <cstring>

namespace vandrelle {

WmWord* TkPassStem::stem(const WmWord* word, WmWord* place) {
  if (place == nullptr) return WmWord::Create(*word);
  if (place == word) return place;
  // Length and letters apart: the length was just stored, and a load across it
  // and the letters would wait for both. Measured on every word of a run.
  const int letters = word->num_letters();
  place->num_letters(letters);
  std::memcpy(reinterpret_cast<char*>(place) + 1, word->letters(),
              static_cast<std::size_t>(letters));
  return place;
}

}  // namespace vandrelle
