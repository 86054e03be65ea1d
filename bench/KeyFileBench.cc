// The word table of an index: written, looked up in random order, walked.
//
// To compare, by time:
//   build/release/bin/KeyFileBench --benchmark_filter=BM_Lookup
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "KeyFile/KfKeyFileManager.h"

namespace {

using namespace vandrelle;

constexpr int kWords = 300000;

const std::vector<std::string>& words() {
  static const std::vector<std::string> sorted = [] {
    std::mt19937 random(1);
    std::vector<std::string> made;
    for (int i = 0; i < kWords * 5 / 4; ++i) {
      std::string word;
      for (std::size_t letters = 3 + random() % 9; letters > 0; --letters) {
        word += static_cast<char>('a' + random() % 26 * (random() % 26) / 25);
      }
      made.push_back(word);
    }
    std::sort(made.begin(), made.end());
    made.erase(std::unique(made.begin(), made.end()), made.end());
    made.resize(std::min<std::size_t>(made.size(), kWords));
    return made;
  }();
  return sorted;
}

// A directory that goes with the process.
class BenchDirectory {
 public:
  BenchDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "vandrelleXXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~BenchDirectory() { std::filesystem::remove_all(path_); }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

std::string root() {
  static const BenchDirectory directory;
  return directory / "words";
}

void writeTable() {
  std::unique_ptr<KdFileCreator> creator(
      KfKeyFileManager::KdCreate(root().c_str(), 512, kKdMappedPointers, 5));
  for (const std::string& word : words()) creator->Add_Entry(word.c_str(), "12345", 5);
}

void BM_Write(benchmark::State& state) {
  words();
  for (auto _ : state) writeTable();
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(words().size()));
}
BENCHMARK(BM_Write)->Unit(benchmark::kMillisecond);

void BM_Lookup(benchmark::State& state) {
  writeTable();
  std::unique_ptr<KdFileAccessor> table(
      KfKeyFileManager::KdBind(root().c_str(), static_cast<int>(state.range(0))));
  std::size_t next = 0;
  char data[5];
  int32 size;
  for (auto _ : state) {
    next = (next + 104729) % words().size();
    WmLocalWord word(words()[next].c_str());
    benchmark::DoNotOptimize(table->Lookup(word.word(), &size, data));
  }
}
BENCHMARK(BM_Lookup)->Arg(kKdMappedPointers)->Arg(kKdMapped);

void BM_Stream(benchmark::State& state) {
  writeTable();
  std::unique_ptr<KdFileAccessor> table(
      KfKeyFileManager::KdBind(root().c_str(), kKdMappedPointers));
  for (auto _ : state) {
    std::unique_ptr<KdStream> stream(table->iterator());
    for (stream->reset(); stream->more(); stream->next()) benchmark::DoNotOptimize(stream->key());
  }
  state.SetItemsProcessed(state.iterations() * table->Num_Entries());
}
BENCHMARK(BM_Stream)->Unit(benchmark::kMillisecond);

}  // namespace
