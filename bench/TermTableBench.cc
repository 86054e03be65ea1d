// How fast terms enter the accumulator: IkIndexer::addTerm over the words of
// documents, temporary files included.
//
// VANDRELLE_BENCH_WORDS names a text file whose words, one a line, are cycled
// through; without it words are drawn from a generated vocabulary in which word
// number n is about n times rarer than the first.
//
// To compare, by items_per_second:
//   build/release/bin/TermTableBench --benchmark_filter=addTerms

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "Index/IkIndexer.h"
#include "Word.h"

namespace {

using namespace vandrelle;

// An indexer that writes temporary files and compiles nothing.
class Accumulator : public IkIndexer {
 public:
  using IkIndexer::IkIndexer;
  void compileIndex(NameManager*, IkMerger*) override {}
};

std::vector<WmLocalWord> loadWords() {
  std::vector<WmLocalWord> words;
  if (const char* path = std::getenv("VANDRELLE_BENCH_WORDS")) {
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
      if (!line.empty() && line.size() <= 62) words.emplace_back(line.c_str());
    }
    return words;
  }
  constexpr double kVocabulary = 150000;
  std::mt19937 random(1);
  std::uniform_real_distribution<double> uniform(0, std::log(kVocabulary));
  for (int i = 0; i < 2000000; ++i) {
    const int rank = static_cast<int>(std::exp(uniform(random)));
    words.emplace_back(("w" + std::to_string(rank * 7919 % 1000003)).c_str());
  }
  return words;
}

void addTerms(benchmark::State& state) {
  static const std::vector<WmLocalWord> words = loadWords();
  constexpr std::size_t kWordsPerDocument = 400;
  const std::string root = "/tmp/vandrelle-term-bench";
  for (auto _ : state) {
    Accumulator accumulator(root.c_str());
    accumulator.recordProximity(0);
    for (std::size_t i = 0; i < words.size(); ++i) {
      accumulator.addTerm(words[i].word(), static_cast<int>(i / kWordsPerDocument),
                          static_cast<int>(i % kWordsPerDocument));
    }
    accumulator.flushTempfiles();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(words.size()));
}
BENCHMARK(addTerms)->Unit(benchmark::kMillisecond);

}  // namespace
