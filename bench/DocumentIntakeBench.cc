// How long it takes to list small pages, per file: names resolved, typed, opened
// for their header and recorded. Most of it is the system's.
//
// To compare, by items_per_second:
//   build/release/bin/DocumentIntakeBench --benchmark_filter=ListPages
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "Document/DcFieldBag.h"
#include "Document/DcManager.h"
#include "Document/DcMetaIndexCreator.h"

namespace vandrelle {
namespace {

void ListPages(benchmark::State& state) {
  char name[] = "/tmp/vandrelle_bench_XXXXXX";
  const std::string dir = mkdtemp(name);
  const std::string root = dir + "/root";
  for (int page = 0; page < state.range(0); ++page) {
    const std::string section = dir + "/in/section" + std::to_string(page / 100);
    std::filesystem::create_directories(section);
    std::ofstream(section + "/page" + std::to_string(page) + ".html")
        << "<html><head><title>Page " << page << "</title></head><body>words</body></html>";
  }
  for (auto _ : state) {
    for (const char* suffix : {".fld.nam", ".fld.val", ".fld.ptr", ".fld.lst"}) {
      std::filesystem::remove(root + suffix);
    }
    std::unique_ptr<DcMetaIndexCreator> creator(
        DcManager::getMetaIndexCreator(root.c_str(), 0, nullptr));
    DcFieldBag fields(0);
    fields.Add("title", 0);
    creator->excludeBadEndings();
    creator->addDataType("\\..*htm.*$", 2, 0);
    creator->DoneWithDataTypes();
    creator->specifyFields(&fields);
    creator->Add((dir + "/in").c_str());
    creator->DoneAddingDocs();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  std::filesystem::remove_all(dir);
}
BENCHMARK(ListPages)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vandrelle
