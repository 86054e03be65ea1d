// The summary of a document, in bytes of its text a second: a page of prose
// with tags, prose that declares a description, and pages made to be slow.
//
// To compare, by bytes_per_second:
//   build/release/bin/FieldFinderBench --benchmark_filter=prose
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "Document/DcHeaderDocument.h"
#include "Driver/VymFieldFinder.h"
#include "Tool/HeapText.h"

namespace vandrelle {
namespace {

constexpr std::size_t kPageSize = 80 << 10;

class TextPage final : public DcHeaderDocument {
 public:
  explicit TextPage(const std::string& text) : text_(text) {}
  int documentNum() const override { return 0; }
  int numCharacters() const override { return static_cast<int>(text_.size()); }
  char* characters(long offset, int num, char* place) override {
    return static_cast<char*>(
        std::memcpy(place, text_.data() + offset, static_cast<std::size_t>(num)));
  }
  bool sourceAvailable() const override { return true; }
  int HeadSize() const override { return 0; }
  char* getHeader(const char*) override { return nullptr; }

 protected:
  FdStream* original_words() override { return nullptr; }

 private:
  const std::string& text_;
};

std::string repeated(const std::string& start, const std::string& part) {
  std::string text = start;
  while (text.size() < kPageSize) text += part;
  return text;
}

void BM_Summary(benchmark::State& state, const std::string& text, int mode = 1) {
  VymFieldFinder finder(mode, 5);
  for (auto _ : state) {
    TextPage page(text);
    HeapAptr<char> summary(finder.getSummary(&page));
    benchmark::DoNotOptimize(summary.get());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

const std::string kProse =
    "<p>The harbour of the town was built in the last century, and the <b>lighthouse</b> at its "
    "mouth\nis older still. Boats leave for the islands every morning.</p>\n<ul><li>north</li>"
    "<li>south</li></ul>\n";

BENCHMARK_CAPTURE(BM_Summary, prose, repeated("", kProse));
BENCHMARK_CAPTURE(BM_Summary, quality, repeated("", kProse), 2);
BENCHMARK_CAPTURE(BM_Summary, keywords,
                  repeated("<meta name=\"keywords\" content=\"harbour\">", kProse));
BENCHMARK_CAPTURE(BM_Summary, description,
                  repeated("<meta name=\"description\" content=\"The harbour\">", kProse));
BENCHMARK_CAPTURE(BM_Summary, open_tags, repeated("", "<meta name=description "));
BENCHMARK_CAPTURE(BM_Summary, brackets, repeated("", "<"));

}  // namespace
}  // namespace vandrelle
