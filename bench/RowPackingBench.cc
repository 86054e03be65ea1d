// Packing and unpacking of rows, in pairs a second. The rows have the shape of
// an index's: gaps spread over a factor, most frequencies 1.
//
// To compare, by items_per_second:
//   build/release/bin/RowPackingBench --benchmark_filter=BM_Unpack
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "Index/IkDataFile.h"
#include "Index/IkDataFileUnpacker.h"

namespace vandrelle {
namespace {

constexpr int kPairs = 1 << 18;

std::vector<IkDocumentInfo> rowOf(int meanGap) {
  std::mt19937 random(1);
  std::exponential_distribution<double> gap(1.0 / meanGap);
  std::geometric_distribution<int> frequency(0.6);
  std::vector<IkDocumentInfo> row;
  int chunk = -1;
  for (int i = 0; i < kPairs; ++i) {
    chunk += 1 + static_cast<int>(gap(random));
    row.push_back({chunk, 1 + frequency(random)});
  }
  return row;
}

std::vector<unsigned char> packedRow(int meanGap) {
  const std::vector<IkDocumentInfo> row = rowOf(meanGap);
  std::vector<unsigned char> bytes(row.size() * 8 + 16);
  const int size =
      IkDataFile::packBuffer(row.data(), kPairs, bytes.data(), static_cast<int>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

void BM_PackSparse(benchmark::State& state) {
  const std::vector<IkDocumentInfo> row = rowOf(static_cast<int>(state.range(0)));
  std::vector<unsigned char> bytes(row.size() * 8 + 16);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        IkDataFile::packBuffer(row.data(), kPairs, bytes.data(), static_cast<int>(bytes.size())));
  }
  state.SetItemsProcessed(state.iterations() * kPairs);
}
BENCHMARK(BM_PackSparse)->Arg(2)->Arg(60)->Arg(150)->Arg(2000);

void BM_PackDense(benchmark::State& state) {
  const std::vector<IkDocumentInfo> pairs = rowOf(static_cast<int>(state.range(0)));
  std::vector<int> row(static_cast<std::size_t>(pairs.back().chunk) + 1);
  for (const IkDocumentInfo& pair : pairs)
    row[static_cast<std::size_t>(pair.chunk)] = pair.frequency;
  std::vector<unsigned char> bytes(pairs.size() * 8 + 16);
  for (auto _ : state) {
    benchmark::DoNotOptimize(IkDataFile::packBuffer(row.data(), static_cast<int>(row.size()),
                                                    bytes.data(), static_cast<int>(bytes.size())));
  }
  state.SetItemsProcessed(state.iterations() * kPairs);
}
BENCHMARK(BM_PackDense)->Arg(1)->Arg(2);

void BM_UnpackInlined(benchmark::State& state) {
  const std::vector<unsigned char> bytes = packedRow(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    long sum = 0;
    IkDataFile::unpackPairs(bytes.data(), static_cast<int>(bytes.size()),
                            [&](int chunk, int frequency) { sum += chunk ^ frequency; });
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kPairs);
}
BENCHMARK(BM_UnpackInlined)->Arg(2)->Arg(60)->Arg(150)->Arg(2000);

class SumOfPairs : public IkDataFileUnpacker {
 public:
  void action(int doc_num, int doc_freq, float) override { sum += doc_num ^ doc_freq; }
  long sum = 0;
};

void BM_UnpackVirtual(benchmark::State& state) {
  const std::vector<unsigned char> bytes = packedRow(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    SumOfPairs functor;
    IkDataFile::unpackBuffer(bytes.data(), static_cast<int>(bytes.size()), 1.0f, &functor, nullptr,
                             nullptr);
    benchmark::DoNotOptimize(functor.sum);
  }
  state.SetItemsProcessed(state.iterations() * kPairs);
}
BENCHMARK(BM_UnpackVirtual)->Arg(2)->Arg(60)->Arg(150)->Arg(2000);

}  // namespace
}  // namespace vandrelle
