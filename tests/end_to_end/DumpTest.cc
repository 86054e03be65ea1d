// vandrelleDump on an index that vandrelleIndex has built: what it shows, and that
// no damage to any file of the index makes it crash, hang or end in any way but
// with a line on the error stream.

#include <map>
#include <memory>

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

class DumpTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = std::make_unique<TestDirectory>();
    std::string many = "<html><head><title>Many</title></head><body>";
    for (unsigned i = 0; i < 400; ++i) {
      many += std::string(" word") + static_cast<char>('a' + i % 26) +
              static_cast<char>('a' + i / 26) + std::string(i % 7, 'x');
    }
    const std::map<std::string, std::string> pages = {
        {"a.html",
         "<html><head><title>Ovens</title></head><body>The oven bakes bread. Bread, bread and rye. "
         "A boat.</body></html>"},
        {"b.html",
         "<html><head><title>Tides</title></head><body>The tide brings salt; bread needs salt."
         "</body></html>"},
        {"c.html", "<p>Bridges and brides cross the bright boat, as boats go.</p>"},
        {"d.html", many + "</body></html>"}};
    std::vector<std::string> options{"-R", root(), "-html", "-fsum"};
    for (const auto& [name, text] : pages) {
      options.push_back(*folder_ / ("pages/" + name));
      writeFile(options.back(), text);
    }
    const ProgramRun built = run(*folder_, "vandrelleIndex", options + kTables);
    ASSERT_EQ(built.status, 0) << built.errors;
    ASSERT_EQ(built.output, "");
  }
  static void TearDownTestSuite() { folder_.reset(); }

  static std::string root() { return *folder_ / "index"; }

  static ProgramRun dump(const std::string& root, std::vector<std::string> command) {
    command.insert(command.begin(), {"-R", root});
    return run(*folder_, "vandrelleDump", command);
  }

  static std::string shown(std::vector<std::string> command) {
    const ProgramRun result = dump(root(), std::move(command));
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
  }

  inline static std::unique_ptr<TestDirectory> folder_;
};
std::vector<std::string> lines(const std::string& text) { return split(text, '\n'); }

TEST_F(DumpTest, ShowsHeaderAndFiles) {
  const std::string text = shown({});
  EXPECT_NE(text.find("totalNumChunks     4\n"), std::string::npos) << text;
  EXPECT_NE(text.find("minDocumentLength  400\n"), std::string::npos) << text;
  for (const char* line :
       {"          36  .info\n", "           4  .norm\n", "          16  .sum\n",
        "         768  .trp\n", "         120  .idx\n", "          20  .fidx\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
  }
}

TEST_F(DumpTest, ShowsWordsFromAPrefixInOrder) {
  // ln 5 in its byte's steps.
  EXPECT_EQ(shown({"words", "bri"}),
            "       7  brides                         1    1.6031\n"
            "       8  bridges                        1    1.6031\n"
            "       9  bright                         1    1.6031\n"
            "      10  brings                         1    1.6031\n");
  EXPECT_EQ(shown({}).find("numTerms           423\n"), 0u);
  EXPECT_EQ(lines(shown({"words"})).size(), 423u);
  EXPECT_EQ(shown({"words", "zz"}), "");
  EXPECT_EQ(shown({"words", "0"}), "");
}

TEST_F(DumpTest, ShowsRowsAndStems) {
  EXPECT_EQ(shown({"row", "Bread"}),  // ln 2.5
            "word 6, 2 documents, idf 0.9163, row of 16 bytes at 48 (hexadecimal)\n"
            "       0       3\n       1       1\n");
  // The rarer word comes first.
  EXPECT_EQ(shown({"stem", "boat"}),
            "boats                       1.6094\nboat                        0.9163\n");
}

TEST_F(DumpTest, ShowsDocuments) {
  const auto page = [](const char* name) { return *folder_ / ("pages/" + std::string(name)); };
  // Three are shorter than the least length.
  EXPECT_EQ(shown({"docs"}), "       0  2048       110  255       4.738  " + page("a.html") +
                                 "\n       1  2048        98  255       4.671  " + page("b.html") +
                                 "\n       2  2048        61  255       4.761  " + page("c.html") +
                                 "\n       3  2048      4055   80      32.229  " + page("d.html") +
                                 "\n");
  const std::string fields = "title     Tides\nurl       " + page("b.html") +
                             "\nsummary   The tide brings salt; bread needs ...  \n";
  EXPECT_EQ(shown({"fields", "1"}), fields);
  EXPECT_EQ(shown({"doc", "1"}), "document  1\nname      " + page("b.html") +
                                     "\ntype      2048\nsize      98\nheader    45\n"
                                     "norm      255, about 400 characters of words\n"
                                     "length    4.671\n" +
                                     fields);
}

// Frequencies 2 and 1 of idf ln 5, against 1 of ln 2.5 and ln 5/3; the title counts too.
TEST_F(DumpTest, ShowsDigestsByFallingScore) {
  EXPECT_EQ(shown({"digest", "1"}),
            " 0.68904      18  salt\n 0.34452      10  brings\n 0.34452      14  needs\n"
            " 0.34452      20  tide\n 0.34452      21  tides\n 0.19614       6  bread\n"
            " 0.10935      19  the\n");
}

TEST_F(DumpTest, RefusesInOneLine) {
  const auto refused = [](const std::string& index, const std::string& command, int status = 1) {
    const ProgramRun result = dump(index, split(command, ' '));
    EXPECT_EQ(result.status, status) << command;
    EXPECT_EQ(lines(result.errors).size(), 1u) << command << result.errors;
  };
  for (const char* command : {"", "words", "docs", "fields 0", "digest 0", "stem bread"}) {
    refused(*folder_ / "missing", command);
  }
  for (const char* command : {"row unheard", "doc 4", "fields 4", "digest 4", "stem unheard"}) {
    refused(root(), command);
  }
  for (const char* command : {"doc -1", "doc 99999999999", "doc 1x", "doc", "digest -1", "row",
                              "docs 1", "words a b", "sing", "-words", "words -R"}) {
    refused(root(), command, 2);
    refused(*folder_ / "missing", command, 2);
  }
  for (const char* command : {"row ", "stem "}) refused(root(), command + std::string(300, 'w'));
}

// One file of a copy of the index at a time is cut short or has bytes changed.
// The commands that read it take turns: a run costs more than the damage.
TEST_F(DumpTest, SurvivesDamage) {
  using Commands = std::vector<std::vector<std::string>>;
  const Commands words{{"words"}, {"row", "bread"}, {"stem", "word"}};
  const Commands docs{{"docs"}, {"doc", "3"}};
  const Commands fields{{"fields", "3"}, {"doc", "0"}};
  const std::map<std::string, Commands> readers{
      {".info", {{"words"}, {"docs"}, {"digest", "3"}, {}}},
      {".key", {{"words"}, {"row", "bread"}, {"digest", "3"}}},
      {".ptr", words},
      {".dat", words},
      {".idf", {{"words"}}},
      {".trp", {{"digest", "3"}, {"digest", "0"}}},
      {".unstem", {{"stem", "bread"}, {"stem", "boat"}}},
      {".sum", docs},
      {".norm", docs},
      {".idx", docs},
      {"_one.idx", docs},
      {".lst", docs},
      {".lpt", docs},
      {".fidx", fields},
      {".fdat", fields},
      {".fnam", fields}};
  const std::string copy = *folder_ / "copy/index";
  std::filesystem::create_directories(*folder_ / "copy");
  for (const auto& [suffix, ignored] : readers) {
    std::filesystem::copy_file(root() + suffix, copy + suffix);
  }
  for (const auto& [suffix, commands] : readers) {
    const std::string whole = fileBytes(root() + suffix);
    ASSERT_FALSE(whole.empty()) << suffix;
    std::vector<std::string> damaged;
    for (const std::size_t length : {std::size_t{0}, whole.size() / 2, whole.size() - 1}) {
      damaged.push_back(whole.substr(0, length));
    }
    // Ever wider steps from the first bytes, where headers are, on.
    for (std::size_t at = 0; at < whole.size(); at += 1 + 2 * at) {
      std::string bytes = whole;
      bytes[at] = static_cast<char>(at % 3 == 0   ? 0xFF
                                    : at % 3 == 1 ? bytes[at] ^ 0x80
                                                  : bytes[at] + 1);
      damaged.push_back(bytes);
    }
    for (std::size_t i = 0; i < damaged.size(); ++i) {
      writeFile(copy + suffix, damaged[i]);
      const ProgramRun result = dump(copy, commands[i % commands.size()]);
      EXPECT_TRUE(result.status == 0 || (result.status == 1 && lines(result.errors).size() == 1))
          << suffix << " of " << damaged[i].size() << " bytes, case " << i << ", status "
          << result.status << ", signal " << result.signal << '\n'
          << result.errors;
    }
    writeFile(copy + suffix, whole);
  }
}

}  // namespace
}  // namespace vandrelle::test
