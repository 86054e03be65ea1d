#include "Driver/AnswerDisplay.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "Fun/FdBag.h"
#include "Fun/FdStream.h"
#include "Query/QlGatherResult.h"
#include "Token.h"
#include "Tool/PrintableText.h"
#include "Word.h"

namespace vandrelle {
namespace {

using nlohmann::json;

constexpr std::size_t kWordsOfAGroup = 5;
constexpr int kDocumentsOfAGroup = 3;

// Calls take(key, weight) for the entries of a queue as summaryWords() and
// summaryDocs() answer it, and deletes the queue; nothing for null.
template <typename Take>
void takeWeighted(FdBag* bag, Take take) {
  const std::unique_ptr<FdBag> owner(bag);
  if (bag == nullptr) return;
  const std::unique_ptr<FdStream> stream(bag->iterator());
  for (stream->reset(); stream->more(); stream->next()) {
    float weight = 0;
    std::memcpy(&weight, stream->data(), sizeof weight);
    take(stream->key(), weight);
  }
}

// A group's vector may name a word twice, and stop words.
std::vector<QlWeightedWord> wordsOf(const QlSearcher& searcher, QlGatherResult& groups,
                                    int number) {
  std::vector<QlWeightedWord> words;
  takeWeighted(groups.summaryWords(number, 4 * kWordsOfAGroup), [&](void* key, float weight) {
    const auto* word = static_cast<const WmWord*>(key);
    if (searcher.isStopWord(*word)) return;
    const std::string text(word->letters(), static_cast<std::size_t>(word->num_letters()));
    const bool known = std::any_of(words.begin(), words.end(),
                                   [&](const auto& other) { return other.word == text; });
    if (!known && words.size() < kWordsOfAGroup) words.push_back({text, weight});
  });
  return words;
}

std::vector<QlHit> centralOf(QlGatherResult& groups, int number) {
  std::vector<QlHit> nearest;
  takeWeighted(groups.summaryDocs(number, kDocumentsOfAGroup), [&](void* key, float weight) {
    QlHit hit{0, weight};
    std::memcpy(&hit.document, key, sizeof hit.document);
    nearest.push_back(hit);
  });
  return nearest;
}

// One line of text: control bytes and runs of blanks become single blanks.
std::string oneLine(const std::string& text) {
  std::string line;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte > 0x20 && byte != 0x7F) {
      line += letter;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

json jsonOf(QlSearcher& searcher, const QlHit& hit) {
  const QlPage page = searcher.page(hit.document);
  return {{"document", hit.document},
          {"score", hit.score},
          {"address", asUtf8(page.address)},
          {"title", asUtf8(oneLine(page.title))},
          {"summary", asUtf8(oneLine(page.summary))}};
}

json jsonOf(const QlWeightedWord& word) {
  return {{"word", asUtf8(word.word)}, {"weight", word.weight}};
}

std::string fixed(double number, int digits) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(digits) << number;
  return text.str();
}

}  // namespace

AnswerDisplay::AnswerDisplay(QlSearcher& searcher, Form form, bool interactive)
    : searcher_(searcher),
      form_(form),
      separator_(interactive ? "" : "\n"),
      bold_(form == Form::kBlocks && isatty(STDOUT_FILENO) != 0) {}

// The text with the words of the query in bold.
std::string AnswerDisplay::marked(const std::string& text) const {
  if (!bold_) return text;
  TkPassStem asWritten;
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  TkMemoryStream words(&asWritten, lexer.get(), text.data(), text.size(), true);
  std::string result;
  std::size_t done = 0;
  for (words.reset(); words.more(); words.next()) {
    const auto& word = *static_cast<const WmWord*>(words.key());
    if (!searcher_.matches(word)) continue;
    const std::size_t begin = static_cast<const TkLexInfo*>(words.data())->offset;
    const std::size_t end = begin + static_cast<std::size_t>(word.num_letters());
    if (begin < done || end > text.size()) continue;
    result +=
        text.substr(done, begin - done) + "\033[1m" + text.substr(begin, end - begin) + "\033[22m";
    done = end;
  }
  return result + text.substr(done);
}

void AnswerDisplay::hit(int rank, const QlHit& hit, const char* indent) {
  const QlPage page = searcher_.page(hit.document);
  const std::string title = oneLine(page.title);
  const std::string address = printable(page.address);
  if (form_ == Form::kPlain) {
    std::cout << rank << '\t' << hit.document << '\t' << hit.score << '\t' << address << '\t'
              << title << '\n';
    return;
  }
  std::cout << indent << std::setw(3) << rank << ". " << fixed(hit.score, 4) << "  "
            << (title.empty() ? "(no title)" : marked(title)) << '\n'
            << indent << "     " << address << "  [" << hit.document << "]\n";
  const std::string summary = oneLine(page.summary);
  if (!summary.empty()) std::cout << indent << "     " << marked(summary) << '\n';
}

void AnswerDisplay::jsonHit(int rank, const QlHit& hit) {
  json object = jsonOf(searcher_, hit);
  object["rank"] = rank;
  std::cout << object.dump() << '\n';
}

void AnswerDisplay::closingLine(int matches, double seconds) const {
  std::cout << separator_ << matches << (matches == 1 ? " document matches" : " documents match")
            << ", " << fixed(1000 * seconds, 2) << " ms\n";
}

void AnswerDisplay::hits(const QlAnswer& answer, double seconds) {
  int rank = 0;
  for (const QlHit& found : answer.hits) {
    if (++rank > 1 && form_ == Form::kBlocks) std::cout << separator_;
    if (form_ == Form::kJson) {
      jsonHit(rank, found);
    } else {
      hit(rank, found, "");
    }
  }
  if (form_ == Form::kBlocks) closingLine(answer.matches, seconds);
}

void AnswerDisplay::jsonGroup(int number, int documents, const std::vector<QlWeightedWord>& words,
                              const std::vector<QlHit>& nearest) {
  json object{{"group", number},
              {"documents", documents},
              {"words", json::array()},
              {"central", json::array()}};
  for (const QlWeightedWord& word : words) object["words"].push_back(jsonOf(word));
  for (const QlHit& hit : nearest) object["central"].push_back(jsonOf(searcher_, hit));
  std::cout << object.dump() << '\n';
}

void AnswerDisplay::group(QlGatherResult& groups, int number) {
  const std::vector<QlWeightedWord> words = wordsOf(searcher_, groups, number);
  const std::vector<QlHit> nearest = centralOf(groups, number);
  const int documents = groups.numDocs(number);
  if (form_ == Form::kJson) {
    jsonGroup(number + 1, documents, words, nearest);
    return;
  }
  if (form_ == Form::kBlocks) {
    if (number > 0) std::cout << separator_;
    std::cout << "Group " << number + 1 << ", " << documents
              << (documents == 1 ? " document:" : " documents:");
    for (const QlWeightedWord& word : words) std::cout << ' ' << printable(word.word);
    std::cout << '\n';
  }
  int place = 0;
  for (const QlHit& found : nearest) {
    hit(form_ == Form::kPlain ? number + 1 : ++place, found, "  ");
  }
}

void AnswerDisplay::groups(QlGatherResult& groups, int matches, double seconds) {
  for (int number = 0; number < groups.numGroups(); ++number) group(groups, number);
  if (form_ == Form::kBlocks) closingLine(matches, seconds);
}

void AnswerDisplay::words(const std::vector<QlWeightedWord>& words) {
  int rank = 0;
  for (const QlWeightedWord& word : words) {
    ++rank;
    if (form_ == Form::kJson) {
      json object = jsonOf(word);
      object["rank"] = rank;
      std::cout << object.dump() << '\n';
    } else if (form_ == Form::kPlain) {
      std::cout << rank << '\t' << printable(word.word) << '\t' << word.weight << '\n';
    } else {
      std::cout << std::setw(3) << rank << ". " << fixed(word.weight, 4) << "  "
                << printable(word.word) << '\n';
    }
  }
}

}  // namespace vandrelle
