// Words of file documents in bytes of text a second: through a document manager,
// with all that opening, finding and closing a document costs, and, as the bound
// of that, from the same text in memory.
//
// To compare, by bytes_per_second:
//   build/release/bin/DocumentWordsBench --benchmark_filter=BM_DocumentWords
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>

#include "Document/DcDocument.h"
#include "Document/DcDocumentUtil.h"
#include "Document/DcMetaDocManager.h"
#include "Fun/FdStream.h"
#include "Token.h"

namespace vandrelle {
namespace {

constexpr int kHtmlType = 2;
constexpr int kTrailerIntegers = 18;

std::string page(int size) {
  static std::mt19937 random(5);
  std::string text = "<html><head><title>A page</title></head>\n<body>\n";
  while (static_cast<int>(text.size()) < size) {
    const auto letters = 1 + random() % 9;
    for (unsigned i = 0; i < letters; ++i) text += static_cast<char>('a' + random() % 26);
    text += random() % 12 == 0 ? "</p>\n<p>" : " ";
  }
  return text;
}

// An index of equal pages in a directory of its own.
class Site {
 public:
  Site(int pages, int size) : text_(page(size)) {
    char name[] = "/tmp/vandrelle_bench_XXXXXX";
    directory_ = mkdtemp(name);
    root_ = directory_ + "/ix";
    std::ofstream rows(root_ + ".idx"), ones(root_ + "_one.idx");
    std::ofstream list(root_ + ".lst"), pointers(root_ + ".lpt");
    for (int i = 0; i < pages; ++i) {
      const std::string file = directory_ + "/" + std::to_string(i) + ".html";
      std::ofstream(file) << text_;
      for (const int value : {kHtmlType, i, i}) DcDocumentUtil::write_int32(rows, value);
      DcDocumentUtil::write_int32(ones, static_cast<int>(text_.size()));
      DcDocumentUtil::write_int32(ones, 40);
      DcDocumentUtil::write_int32(pointers, static_cast<int>(list.tellp()));
      DcDocumentUtil::write_int32(pointers, i);
      DcDocumentUtil::write_int16(list, -1);
      list << file << ' ';
    }
    DcDocumentUtil::write_int32(list, 0);
    for (int i = 0; i < kTrailerIntegers; ++i) DcDocumentUtil::write_int32(rows, 0);
  }
  ~Site() { std::filesystem::remove_all(directory_); }

  const std::string& text() const { return text_; }
  const std::string& root() const { return root_; }

 private:
  std::string text_;
  std::string directory_;
  std::string root_;
};

long countWords(FdStream& stream) {
  long words = 0;
  for (stream.reset(); stream.more(); stream.next()) {
    benchmark::DoNotOptimize(stream.key());
    ++words;
  }
  return words;
}

void BM_DocumentWords(benchmark::State& state) {
  const Site site(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  DcMetaDocManager manager(site.root().c_str(), stemmer.get(), nullptr, nullptr);
  for (auto _ : state) {
    for (int i = 0; i < manager.numDocuments(); ++i) {
      const std::unique_ptr<DcDocument> document(manager.documentNum(i));
      const std::unique_ptr<FdStream> words(document->words());
      benchmark::DoNotOptimize(countWords(*words));
    }
  }
  state.SetBytesProcessed(state.iterations() * manager.numDocuments() *
                          static_cast<long>(site.text().size()));
}
BENCHMARK(BM_DocumentWords)->Args({2000, 2000})->Args({2000, 10000})->Args({2, 20000000});

void BM_MemoryWords(benchmark::State& state) {
  const std::string text = page(static_cast<int>(state.range(0)));
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  const std::unique_ptr<TkLexer> lexer(TkManager::HtmlLexer(0));
  for (auto _ : state) {
    TkMemoryStream words(stemmer.get(), lexer.get(), text.data(), text.size());
    benchmark::DoNotOptimize(countWords(words));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}
BENCHMARK(BM_MemoryWords)->Arg(10000)->Arg(20000000);

}  // namespace
}  // namespace vandrelle
