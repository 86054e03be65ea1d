// The rows of a source of the merger as text.
#pragma once

#include <sstream>

#include "IkTestTools.h"
#include "Index/IkMergeObject.h"

namespace vandrelle {

// All words with their pairs, in one of the two forms: "word: chunk/frequency ...; ".
// What has pairs gets a number; positions are copied if there is a creator.
inline std::string contentOf(IkMergeObject* source, bool dense, IkProxCreator* prox = nullptr) {
  std::ostringstream text;
  int number = 0;
  source->reset();
  while (const WmWord* word = source->word()) {
    text << *word << ":";
    // Behind one pair, as of another source.
    std::vector<IkDocumentInfo> pairs(static_cast<std::size_t>(source->maxElements()) + 1);
    std::vector<int> row(20);
    int count = 1;
    if (dense) {
      source->unpack(row.data(), 20, &count, prox);
      pairs.resize(1);
      for (int i = 0; i < 20; ++i) {
        const int frequency = row[static_cast<std::size_t>(i)];
        if (frequency > 0) pairs.push_back({i, frequency});
      }
    } else {
      source->unpackSparse(pairs.data(), &count, prox);
      pairs.resize(static_cast<std::size_t>(count));
    }
    EXPECT_EQ(pairs.size(), static_cast<std::size_t>(count));
    pairs.erase(pairs.begin());
    for (const IkDocumentInfo& pair : pairs) text << " " << pair.chunk << "/" << pair.frequency;
    text << "; ";
    source->newWordNumber(count > 1 ? number++ : -1);
  }
  return text.str();
}

}  // namespace vandrelle
