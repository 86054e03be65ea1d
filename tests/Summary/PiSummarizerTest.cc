// Summaries of texts, and what they leave behind.

#include "Summary/PiSummarizer.h"

#include <map>
#include <memory>
#include <random>
#include <sstream>

#include "Document/DcDocumentManager.h"
#include "Document/DcSentenceManager.h"
#include "Document/DcSimpleDocument.h"
#include "Index/IkLocalIndexBinder.h"
#include "Parser/PrManager.h"
#include "Parser/PrParser.h"
#include "Query/QlGather.h"
#include "Query/QlGatherResult.h"
#include "Summary/PiHtmlSummarizeOperator.h"
#include "TestFiles.h"
#include "Token.h"
#include "Tool/HeapText.h"

namespace vandrelle {
namespace {

namespace fs = std::filesystem;

// Sentences 1 and 3 share the words of the text.
const char* const kTides =
    "Nobody asked for this. The tide lifts boats in the harbour. Bread costs money. The tide "
    "leaves the harbour and the boats. Cows eat grass.";

class PiSummarizerTest : public DirectoryTest {
 protected:
  std::string root() const { return directory_ / "work"; }
  void write(const std::string& name) const { writeFile(directory_ / name, name); }
  // The names in the folder with the sizes of the files.
  std::map<std::string, std::uintmax_t> files() const {
    std::map<std::string, std::uintmax_t> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names[entry.path().filename()] = entry.is_regular_file() ? entry.file_size() : 0;
    }
    return names;
  }
  // "(null)" for no summary. What goes to the error stream is kept.
  std::string summary(const std::string& text, int maxsize, int maxsents, int clean = 0) {
    testing::internal::CaptureStderr();
    const HeapAptr<char> made(PiSummarizer::summarize(
        text.c_str(), nullptr, maxsize, maxsents, root().c_str(), clean, stemmer_.get(), nullptr));
    errors_ = testing::internal::GetCapturedStderr();
    return made == nullptr ? "(null)" : made.get();
  }

  const fs::path folder_ = directory_.path();
  std::unique_ptr<TkStemmer> stemmer_{TkManager::NullStemmer()};
  std::unique_ptr<TkLexer> lexer_{TkManager::SimpleTextLexer()};
  std::string errors_;
};

constexpr char kNotBuilt[] =
    "index of sentences couldn't be built\ncouldn't bind to index of sentences\n";

TEST_F(PiSummarizerTest, ChoosesAndCuts) {
  const struct {
    const char* text;
    int maxsize, maxsents;
    const char* summary;
    const char* errors;
  } cases[] = {
      {"", 0, 3, "(null)", ""},
      {"ab", 0, 3, "(null)", "there are no sentences\n"},
      {"One sentence here", 0, 1, "One sentence here", ""},
      {"It is one. It is two.", 0, 9, "It is one. It is two.", ""},
      {"It is one. It is two.", 0, 0, "(null)", ""},
      {"It is one. It is two.", 0, -1, "(null)", ""},
      {"It is one. It is two.", -1, 2, "It is one. It is two.",
       "WARNING: maxsize is less than 0 - ignored\n"},
      {"It is one. It is two.", 21, 2, "It is one. It is two.", ""},
      {"It is one. It is two.", 20, 2, "It is one. It is...", ""},
      {"It is one. It is two.", 10, 2, "It is one.", ""},
      {"It is one. It is two.", 1, 2, "...", ""},
      {kTides, 0, 2,
       " The tide lifts boats in the harbour. The tide leaves the harbour and the "
       "boats.",
       ""},
      {kTides, 45, 2, " The tide lifts boats in the harbour. The...", ""},
      {"... ... ??? !!! . . ... ...", 0, 0, "(null)", ""},
      {"$$$. $$$. $$$.", 0, 1, "(null)", kNotBuilt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(summary(c.text, c.maxsize, c.maxsents), c.summary) << c.text << c.maxsize;
    EXPECT_EQ(errors_.substr(0, c.errors == kNotBuilt ? sizeof kNotBuilt - 1 : errors_.size()),
              c.errors);
    EXPECT_TRUE(files().empty());
  }
}

TEST_F(PiSummarizerTest, AddsAnEllipsis) {
  const struct {
    const char* sentence;
    int available;
    const char* cut;
  } cases[] = {
      {"one two three", 7, "one two..."},
      {"one two three", 9, "one two..."},
      {"one two three", 2, "..."},
      {"one antidisestablishment", 20, "one antidi..."},
      {"one antidisestablishment", 13, "one..."},
      {"one\ttwo", 6, "one..."},
      {"x", 0, "..."},
  };
  for (const auto& c : cases) {
    const HeapAptr<char> cut(PiSummarizer::AddEllipsis(c.sentence, c.available));
    EXPECT_STREQ(cut.get(), c.cut) << c.available;
  }
}

TEST_F(PiSummarizerTest, HandsTheSentencesOut) {
  char kept = 0;
  char* sentences[4] = {&kept, &kept, &kept, &kept};
  const HeapAptr<char> all(PiSummarizer::summarize("It is one. It is two. It is three.", sentences,
                                                   14, 3, nullptr, 0, stemmer_.get(), nullptr));
  EXPECT_STREQ(all.get(), "It is one. It...");
  const HeapAptr<char> first(sentences[0]), second(sentences[1]);
  EXPECT_STREQ(first.get(), "It is one.");
  EXPECT_STREQ(second.get(), " It...");
  EXPECT_EQ(sentences[2], nullptr);
  EXPECT_EQ(sentences[3], &kept);
}

// With `clean` it is sentence number "taken so far" that is judged: sentence 0 of
// the first text is bad, so that nothing is taken; sentence 1 of the second.
TEST_F(PiSummarizerTest, JudgesBySentencesFromTheTop) {
  const std::string rest = std::string(kTides).substr(22);
  EXPECT_EQ(summary("No no." + rest, 0, 2, 1), "(null)");
  EXPECT_EQ(summary(kTides, 0, 2, 1), summary(kTides, 0, 2));
  EXPECT_EQ(summary("All is good here. No no." + rest, 0, 2, 1),
            " The tide leaves the harbour and the boats.");
}

TEST_F(PiSummarizerTest, TouchesNoOtherFiles) {
  for (const char* other : {"work1.dat", "work10.info", "work.key.bak", "work", "wor.dat",
                            "work.fdat", "work.tmp0000"}) {
    write(other);
  }
  const auto before = files();
  // A run that was killed under the same number.
  for (const char* stale : {"work.dat", "work.trp", "work.tmp000"}) write(stale);
  EXPECT_NE(summary(kTides, 0, 2), "(null)");
  EXPECT_EQ(files(), before);
  for (const char* stale : {"work.dat", "work.trp", "work.tmp000"}) write(stale);
  EXPECT_EQ(summary("$$$. $$$. $$$.", 0, 1), "(null)");
  EXPECT_EQ(files(), before);
}

TEST_F(PiSummarizerTest, FailsCleanly) {
  // One after the other, at the several files of the work index.
  for (const char* blocked : {"work.tmp000", "work.dat", "work.key", "work.idf", "work.trp"}) {
    fs::create_directories(folder_ / blocked / "kept");
    EXPECT_EQ(summary(kTides, 0, 2), "(null)") << blocked;
    EXPECT_EQ(errors_.rfind("index of sentences couldn't be built\n", 0), 0u) << errors_;
    EXPECT_NE(errors_.find("\ncouldn't bind to index of sentences\n"), std::string::npos);
    EXPECT_EQ(files().size(), 1u) << blocked;
    fs::remove_all(folder_ / blocked);
  }
  EXPECT_NE(summary(kTides, 0, 2), "(null)");
  fs::remove_all(folder_);
  EXPECT_EQ(summary(kTides, 0, 2), "(null)");
  fs::create_directory(folder_);
  EXPECT_EQ(summary(kTides, 0, 5), kTides);
}

TEST_F(PiSummarizerTest, StandsAnyText) {
  std::mt19937 random(3);
  const auto words = [&](std::string text, std::size_t size, const char* end) {
    while (text.size() < size) text += "w" + std::to_string(random() % 500) + end;
    return text;
  };
  std::string bytes;
  for (int i = 0; i < 300000; ++i) bytes += static_cast<char>(1 + random() % 255);
  const std::string texts[] = {words("", 10 << 20, " "), words("Two. ", 1 << 20, " "),
                               words("", 500000, ". "), bytes};
  for (const std::string& text : texts) {
    const std::string made = summary(text, 400, 3);
    EXPECT_GT(made.size(), 3u);
    EXPECT_LE(made.size(), 403u);
    EXPECT_EQ(errors_, "");
    EXPECT_TRUE(files().empty());
  }
}

// What getGather() does is what the query says.
TEST_F(PiSummarizerTest, GathersAsItsQuery) {
  DcSentenceManager sentences(kTides, stemmer_.get(), lexer_.get(), 1, 0, 0);
  const std::unique_ptr<IkIndexBinder> index(
      PiSummarizer::makeSummaryBinder(&sentences, root().c_str()));
  ASSERT_NE(index, nullptr);
  const std::unique_ptr<PrNodeCreator> g(QlGather::GatherDDCreator(index.get()));
  const std::unique_ptr<PrNodeCreator> bits(PrManager::BitVectorCreator(1001));
  const std::unique_ptr<PrParser> parser(PiSummarizer::makeParser(g.get(), bits.get()));
  const auto textOf = [](QlGatherResult* groups) {
    std::ostringstream text;
    for (int group = 0; group < groups->numGroups(); ++group) {
      for (int i = 0; i < groups->numDocs(group); ++i) text << groups->doc(group, i) << ' ';
      for (int i = 0; i < 64; ++i) text << groups->summaryVector(group)->score(i) << ' ';
    }
    return text.str();
  };
  PrArgStruct asked;
  ASSERT_EQ(parser->Parse(&asked, PiSummarizer::kQuery), 1);
  const std::unique_ptr<QlGatherResult> done(PiSummarizer::getGather(index.get(), 5));
  EXPECT_EQ(textOf(static_cast<QlGatherResult*>(asked.object)), textOf(done.get()));
  ASSERT_EQ(parser->Parse(&asked, "(g t=1 g=1 (. 0-1000))"), 1);
  EXPECT_EQ(static_cast<QlGatherResult*>(asked.object)->numGroups(), 5);
  PiSummarizer::removeSummaryFiles(root().c_str());
  EXPECT_TRUE(files().empty());
}

// Two documents: a text of five sentences with tags, and none.
class Documents : public DcDocumentManager {
 public:
  DcDocument* documentNum(int num) override {
    static const std::string page = "<h1>Tides</h1>" + std::string(kTides);
    if (num != 0) return nullptr;
    return new DcSimpleDocument(0, "page", page.c_str(), static_cast<int>(page.size()), nullptr,
                                nullptr, nullptr);
  }
};

TEST_F(PiSummarizerTest, Operator) {
  Documents documents;
  IkLocalIndexBinder index("unused", nullptr);
  index.safeCleanupPath(folder_.c_str());
  PiHtmlSummarizeOperatorCout summarize(&index, &documents, stemmer_.get(), nullptr);
  const std::unique_ptr<PrParser> parser(PrManager::Parser());
  const std::unique_ptr<PrNodeCreator> bits(PrManager::BitVectorCreator(9));
  parser->AddKeyword("sum", &summarize);
  parser->AddKeyword(".", bits.get());
  const std::string inside = "sroot=" + folder_.string();
  const std::string tides =
      " The tide lifts boats in the harbour.\n The tide leaves the harbour and the boats.\n";
  const struct {
    std::string query, output, errors;
  } cases[] = {
      {"(sum 0 n=2 " + inside + ")", tides, ""},
      {"(sum 0 n=2 sps=2 slide=9)", tides, ""},
      {"(sum 0 n=1 sep=| " + inside + ")", " The tide leaves the harbour and the boats.|\n", ""},
      {"(sum 0 n=0)", "", ""},
      {"(sum)", "", "Error: This operator requires one numeric argument (the docnum)"},
      {"(sum 0 1 n=2)", tides,
       "Warning: This operator takes one numeric argument (the docnum). Ignoring extra arguments"},
      {"(sum 0 (. 1) n=2)", tides,
       "Warning: This operator takes one numeric argument (the docnum). Ignoring extra arguments"},
      {"(sum 1)", "", "Error: Couldn't get document"},
      {"(sum 0 sroot=/etc)", "", "Error: Invalid tempfile path"},
      {"(sum 0 " + inside + "/..)", "", "Error: Invalid tempfile path"},
      {"(sum 0 " + inside + "-not)", "", "Error: Invalid tempfile path"},
  };
  for (const auto& c : cases) {
    PrArgStruct result;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int parsed = parser->Parse(&result, c.query.c_str());
    const std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.output) << c.query;
    EXPECT_EQ(errors.substr(0, errors.find('\n')), c.errors) << c.query;
    EXPECT_EQ(parsed, c.errors.rfind("Error", 0) == 0 ? 0 : 1);
    result.deleteObject();
    EXPECT_TRUE(files().empty());
  }
}

}  // namespace
}  // namespace vandrelle
