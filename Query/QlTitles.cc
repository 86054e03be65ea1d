#include "Query/QlTitles.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string_view>

#include "Document/DcFieldsBinder.h"
#include "Token.h"

namespace vandrelle {
namespace {

std::uint64_t hashOf(const WmWord& word) {
  return std::hash<std::string_view>()(
      std::string_view(word.letters(), static_cast<std::size_t>(word.num_letters())));
}

// Pages set headings apart from their numbers by no-break spaces, which a lexer
// takes for letters that it doesn't know.
void replaceNoBreakSpaces(std::string& text) {
  for (std::size_t at = 0; (at = text.find("\xC2\xA0", at)) != std::string::npos;) {
    text[at] = text[at + 1] = ' ';
  }
}

}  // namespace

void QlTitles::ask(const WmWord& word, int dimension, float weight) {
  asked_.push_back({hashOf(word), dimension, weight});
}

const std::vector<std::uint64_t>& QlTitles::wordsOf(int document) {
  const auto place = static_cast<std::size_t>(document);
  if (place >= read_.size()) {
    const auto size = static_cast<std::size_t>(std::max(fields_->numDocuments(), document + 1));
    read_.resize(size);
    titles_.resize(size);
  }
  std::vector<std::uint64_t>& words = titles_[place];
  if (read_[place]) return words;
  read_[place] = true;
  const std::unique_ptr<char[]> title(fields_->retrieve(document, "title"));
  if (title == nullptr) return words;
  std::string text(title.get());
  replaceNoBreakSpaces(text);
  TkPassStem asWritten;
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  TkMemoryStream stream(&asWritten, lexer.get(), text.data(), text.size(), true);
  for (stream.reset(); stream.more(); stream.next()) {
    words.push_back(hashOf(*static_cast<const WmWord*>(stream.key())));
  }
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  return words;
}

float QlTitles::fit(int document) {
  if (asked_.empty() || !fields_->valid()) return 0;
  const std::vector<std::uint64_t>& title = wordsOf(document);
  if (title.empty()) return 0;
  float all = 0;
  float found = 0;
  int titleWords = 0;
  for (std::size_t i = 0; i < asked_.size();) {
    // The words of a dimension stand together.
    const Asked& first = asked_[i];
    bool hit = false;
    for (; i < asked_.size() && asked_[i].dimension == first.dimension; ++i) {
      if (!std::binary_search(title.begin(), title.end(), asked_[i].word)) continue;
      hit = true;
      ++titleWords;
    }
    all += first.weight;
    if (hit) found += first.weight;
  }
  const float precision = static_cast<float>(titleWords) / static_cast<float>(title.size());
  return all > 0 ? found / all * std::min(precision, 1.0f) : 0.0f;
}

}  // namespace vandrelle
