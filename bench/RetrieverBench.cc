// Queries by each of the three scoring loops, on a generated index of 10,000 documents:
// the documents of word n have the share 1 / n of the collection. Its files lie under
// the directory for temporary files.
//
// To compare, by time:
//   build/release/bin/RetrieverBench --benchmark_filter=BM_Merge
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Index/IkDataFileCreator.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkLocalRetriever.h"
#include "KeyFile/KfKeyFileManager.h"
#include "Parser/PrAllNode.h"
#include "Parser/PrSparseNode.h"
#include "Tool/ByteOrder.h"

namespace vandrelle {
namespace {

constexpr int kDocuments = 10000;
constexpr int kWords = 100;
constexpr int kResults = 10;

// Of one length, so that their order is that of the numbers.
std::string wordNumber(int number) { return "w" + std::to_string(1000 + number); }

std::string writeIndex() {
  const char* const directory = std::getenv("TMPDIR");
  const std::string root =
      std::string(directory != nullptr ? directory : "/tmp") + "/vandrelle-retriever-bench";
  for (const char* suffix : {".xk", ".xidx.xw", ".latest.info"}) {
    std::remove((root + suffix).c_str());
  }
  std::mt19937 random(1);
  IkIndexInfo info;
  info.numTerms = kWords;
  info.totalNumChunks = kDocuments;
  info.minDocumentLength = 400.0f;
  info.write((root + ".info").c_str());
  IkSimilarity similarity;
  similarity.bind(&info);

  std::string norms;
  for (int i = 0; i < kDocuments; ++i) norms += static_cast<char>(40 + random() % 200);
  std::ofstream(root + ".norm", std::ios::binary) << norms;

  IkDataFileCreator rows;
  rows.create((root + ".dat").c_str(), 0);
  const std::unique_ptr<KdFileCreator> keys(
      KfKeyFileManager::KdCreate(root.c_str(), 512, kKdMappedPointers, 5));
  std::geometric_distribution<int> frequency(0.6);
  for (int i = 0; i < kWords; ++i) {
    std::vector<IkDocumentInfo> row;
    for (int doc = 0; doc < kDocuments; ++doc) {
      if (random() % static_cast<unsigned>(i + 1) == 0) row.push_back({doc, 1 + frequency(random)});
    }
    unsigned char position[5];
    storeU32(position, rows.offset().Lo());
    position[4] = static_cast<unsigned char>(rows.offset().Hi());
    WmLocalWord word(wordNumber(i).c_str());
    keys->Add_Entry(word.word(), position, 5);
    const auto df = static_cast<int>(row.size());
    rows.writeRow(row.data(), df, similarity.IDF(df));
  }
  return root;
}

IkLocalRetriever* retriever() {
  static const std::string root = writeIndex();
  static IkLocalIndexBinder binder(root.c_str(), nullptr);
  return binder.localRetriever();
}

// Words from number `first` on; with `members` above 1 in concepts of so many.
void fill(IkRetrieverInput& input, int first, int dimensions, int members) {
  for (int i = 0; i < dimensions * members; ++i) {
    const WmLocalWord word(wordNumber(first + i).c_str());
    if (members == 1) {
      input.add(word.word(), 1.0f);
      continue;
    }
    if (i % members == 0) input.newVirtualTerm()->weight = 1.0f;
    input.addVirtual(i / members * (members + 1), word.word(), 0.0f);
  }
}

// Arguments: the first word, dimensions, members of each.
void Retrieve(benchmark::State& state, PrParserNode* constraint) {
  IkRetrieverInput input;
  fill(input, static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
       static_cast<int>(state.range(2)));
  for (auto _ : state) {
    retriever()->maxDocs(0);
    retriever()->constraint(constraint);
    const std::unique_ptr<PrSparseNode> result(retriever()->retrieve(&input, kResults));
    benchmark::DoNotOptimize(result->max());
  }
  state.counters["matches"] = input.matches();
}

void BM_SingleTerm(benchmark::State& state) { Retrieve(state, nullptr); }
BENCHMARK(BM_SingleTerm)->Args({0, 1, 1})->Args({20, 1, 1})->Unit(benchmark::kMicrosecond);

void BM_Ranges(benchmark::State& state) { Retrieve(state, nullptr); }
BENCHMARK(BM_Ranges)
    ->Args({0, 4, 1})
    ->Args({20, 4, 1})
    ->Args({5, 2, 2})
    ->Unit(benchmark::kMicrosecond);

void BM_Merge(benchmark::State& state) {
  PrAllNode all(kDocuments);
  Retrieve(state, &all);
}
BENCHMARK(BM_Merge)
    ->Args({0, 4, 1})
    ->Args({20, 4, 1})
    ->Args({20, 4, 5})
    ->Args({10, 4, 15})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vandrelle
