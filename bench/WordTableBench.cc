// How fast the words of a text are found in the word table and entered into it. The
// text is the file that the environment variable VANDRELLE_BENCH_TEXT names, else a
// generated one of 50,000 different words with frequencies after Zipf's law.
//
// To compare, by items_per_second:
//   build/release/bin/WordTableBench --benchmark_filter=Accumulate
#include <benchmark/benchmark.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "Fun/FdFastWordTable.h"

namespace vandrelle {
namespace {

constexpr std::size_t kTokens = 2000000;
constexpr std::size_t kGeneratedWords = 50000;
constexpr std::size_t kLettersInWord = 62;

std::vector<std::string> generatedVocabulary() {
  static const char* const kSyllables[] = {
      "con", "tra", "de", "re", "in",  "pre", "s",  "un",  "ti",  "ly",  "ing", "er",
      "at",  "men", "t",  "al", "or",  "an",  "el", "ma",  "no",  "qui", "st",  "ble",
      "ous", "ed",  "es", "vi", "per", "com", "ba", "dis", "pro", "a",   "the", "o"};
  std::mt19937 random(1);
  std::vector<std::string> words;
  while (words.size() < kGeneratedWords) {
    std::string word;
    // Frequent words are short.
    const auto syllables = 1 + random() % (2 + words.size() * 4 / kGeneratedWords);
    for (std::size_t i = 0; i < syllables; ++i) {
      word += kSyllables[random() % std::size(kSyllables)];
    }
    words.push_back(word);
  }
  return words;
}

// Words in their stored form, one behind the other.
struct Text {
  std::vector<char> bytes;
  std::vector<std::size_t> words;  // offsets

  void add(const std::string& letters) {
    words.push_back(bytes.size());
    bytes.push_back(static_cast<char>(letters.size()));
    bytes.insert(bytes.end(), letters.begin(), letters.end());
  }
  const WmWord* word(std::size_t i) const {
    return reinterpret_cast<const WmWord*>(bytes.data() + words[i]);
  }
};

Text readText(const char* path) {
  Text text;
  std::ifstream file(path, std::ios::binary);
  std::string letters;
  for (int c = file.get(); c >= 0 && text.words.size() < kTokens; c = file.get()) {
    if (std::isalnum(c) != 0 && letters.size() < kLettersInWord) {
      letters += static_cast<char>(std::tolower(c));
    } else if (!letters.empty()) {
      text.add(letters);
      letters.clear();
    }
  }
  return text;
}

const Text& text() {
  static const Text all = [] {
    if (const char* path = std::getenv("VANDRELLE_BENCH_TEXT")) return readText(path);
    const std::vector<std::string> vocabulary = generatedVocabulary();
    std::mt19937 random(2);
    Text generated;
    for (std::size_t i = 0; i < kTokens; ++i) {
      const double uniform = static_cast<double>(random()) / 4294967296.0;
      const auto rank = static_cast<std::size_t>(std::pow(double{kGeneratedWords}, uniform)) - 1;
      generated.add(vocabulary[rank]);
    }
    return generated;
  }();
  return all;
}

template <bool Spread>
void Accumulate(benchmark::State& state) {
  text();
  std::size_t different = 0;
  for (auto _ : state) {
    FdFastWordTable table(static_cast<int>(state.range(0)));
    different = 0;
    for (std::size_t i = 0; i < text().words.size(); ++i) {
      const WmWord* word = text().word(i);
      std::uint32_t hash = FdFastWordTable::hash(word);
      if (Spread) hash = FdFastWordTable::spread(hash);
      if (FdFastWordTable::Data* count = table.dataPointer(word, hash)) {
        ++*count;
      } else {
        table.insert(word, hash, 1);
        ++different;
      }
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * text().words.size()));
  state.counters["different"] = static_cast<double>(different);
}
BENCHMARK(Accumulate<false>)->Arg(1 << 13)->Arg(1 << 16)->Unit(benchmark::kMillisecond);
BENCHMARK(Accumulate<true>)->Arg(1 << 13)->Arg(1 << 16)->Unit(benchmark::kMillisecond);

void Hash(benchmark::State& state) {
  text();
  std::uint32_t sum = 0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < text().words.size(); ++i) {
      sum += FdFastWordTable::hash(text().word(i));
    }
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * text().words.size()));
}
BENCHMARK(Hash)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vandrelle
