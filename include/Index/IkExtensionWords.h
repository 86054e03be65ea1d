// The words that were added to an extension and not yet frozen, by word and in the
// order in which they came.
#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Word.h"

namespace vandrelle {

class IkExtensionWords {
 public:
  int count() const { return static_cast<int>(words_.size()); }
  // The place of the word, or -1.
  int find(const WmWord* word) const {
    const auto found = places_.find(bytes(word));
    return found == places_.end() ? -1 : found->second;
  }
  const WmWord* word(int place) const { return words_[static_cast<std::size_t>(place)]->word(); }
  void add(const WmWord* word) {
    words_.push_back(std::make_unique<WmLocalWord>(*word));
    places_.emplace(bytes(words_.back()->word()), count() - 1);
  }
  void clear() {
    places_.clear();
    words_.clear();
  }

 private:
  static std::string_view bytes(const WmWord* word) {
    return {word->letters(), static_cast<std::size_t>(word->num_letters())};
  }

  std::vector<std::unique_ptr<WmLocalWord>> words_;
  std::unordered_map<std::string_view, int> places_;  // into words_
};

}  // namespace vandrelle
