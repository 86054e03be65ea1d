// How fast HTML becomes words. The pages are those under the folder that the
// environment variable VANDRELLE_BENCH_HTML names, else generated ones.
//
// To compare, by bytes_per_second:
//   build/release/bin/HtmlLexerBench --benchmark_filter=HtmlTokens
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "Token.h"

namespace vandrelle {
namespace {

constexpr std::size_t kMostBytes = 32u << 20;

std::string generatedPages() {
  std::mt19937 random(1);
  std::string pages;
  while (pages.size() < kMostBytes / 4) {
    pages += "<p class=\"text\" id='p." + std::to_string(random() % 1000) + "'>";
    for (int word = 0; word < 40; ++word) {
      for (auto letters = 1 + random() % 9; letters > 0; --letters) {
        pages += static_cast<char>('a' + random() % 26);
      }
      pages += word % 13 == 12  ? ".\n"
               : word % 17 == 0 ? ", <em>"
               : word % 17 == 1 ? "</em> "
                                : " ";
    }
    pages += "</p>\n";
  }
  return pages;
}

const std::string& pages() {
  static const std::string all = [] {
    const char* folder = std::getenv("VANDRELLE_BENCH_HTML");
    if (folder == nullptr) return generatedPages();
    std::string read;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (!entry.is_regular_file() || entry.path().extension() != ".html") continue;
      std::ifstream file(entry.path(), std::ios::binary);
      read.append(std::istreambuf_iterator<char>(file), {});
      if (read.size() >= kMostBytes) break;
    }
    return read;
  }();
  return all;
}

void report(benchmark::State& state, std::int64_t words) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * pages().size()));
  state.counters["words"] = static_cast<double>(words);
}

void HtmlStepByStep(benchmark::State& state) {
  const std::unique_ptr<TkLexer> lexer(TkManager::HtmlLexer(1));
  std::int64_t words = 0;
  for (auto _ : state) {
    words = 0;
    lexer->reset();
    for (char c : pages()) {
      lexer->nextCharacter(c);
      if (lexer->word() != nullptr) ++words;
    }
  }
  report(state, words);
}
BENCHMARK(HtmlStepByStep)->Unit(benchmark::kMillisecond);

void scanAll(benchmark::State& state, TkLexer* lexer) {
  std::int64_t words = 0;
  for (auto _ : state) {
    words = 0;
    lexer->reset();
    const char* p = pages().data();
    const char* const end = p + pages().size();
    while (p != end) {
      p = lexer->scan(p, end);
      if (lexer->word() != nullptr) ++words;
    }
  }
  report(state, words);
}

void HtmlScan(benchmark::State& state) {
  const std::unique_ptr<TkLexer> lexer(TkManager::HtmlLexer(1));
  scanAll(state, lexer.get());
}
BENCHMARK(HtmlScan)->Unit(benchmark::kMillisecond);

void PlainTextScan(benchmark::State& state) {
  const std::unique_ptr<TkLexer> lexer(TkManager::SimpleTextLexer());
  scanAll(state, lexer.get());
}
BENCHMARK(PlainTextScan)->Unit(benchmark::kMillisecond);

void countTokens(benchmark::State& state, TkTokenStream& stream, const auto& rewind) {
  std::int64_t words = 0;
  for (auto _ : state) {
    words = 0;
    rewind();
    for (stream.reset(); stream.more(); stream.next()) {
      benchmark::DoNotOptimize(stream.key());
      ++words;
    }
  }
  report(state, words);
}

void HtmlTokens(benchmark::State& state) {
  const std::unique_ptr<TkLexer> lexer(TkManager::HtmlLexer(1));
  TkPassStem stemmer;
  TkMemoryStream stream(&stemmer, lexer.get(), pages().data(), pages().size());
  countTokens(state, stream, [] {});
}
BENCHMARK(HtmlTokens)->Unit(benchmark::kMillisecond);

void HtmlTokensOfInputStream(benchmark::State& state) {
  const std::unique_ptr<TkLexer> lexer(TkManager::HtmlLexer(1));
  TkPassStem stemmer;
  std::istringstream is(pages());
  const std::unique_ptr<TkTokenStream> stream(TkManager::SimpleStream(&stemmer, lexer.get(), &is));
  countTokens(state, *stream, [&is] {
    is.clear();
    is.seekg(0);
  });
}
BENCHMARK(HtmlTokensOfInputStream)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vandrelle
