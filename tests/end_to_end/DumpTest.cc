// vandrelleDump on an index that vandrelleIndex has built: what it shows, and that
// no damage to any file of the index makes it crash, hang or end in any way but
// with a line on the error stream.

#include <map>
#include <memory>
#include <sstream>

#include "end_to_end/ProgramRun.h"

namespace vandrelle::test {
namespace {

class DumpTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = std::make_unique<TestDirectory>();
    const std::string oven = std::string(40, 'x');
    writeFile(*folder_ / "pages/a.html",
              "<html><head><title>Ovens</title></head><body>The oven bakes bread. Bread, bread "
              "and rye. A boat.</body></html>");
    writeFile(*folder_ / "pages/b.html",
              "<html><head><title>Tides</title></head><body>The tide brings salt; bread needs "
              "salt.</body></html>");
    writeFile(*folder_ / "pages/c.html",
              "<p>Bridges and brides cross the bright boat, as boats go.</p>");
    std::string many = "<html><head><title>Many</title></head><body>";
    for (int i = 0; i < 400; ++i) {
      many += " word" + std::string(1, static_cast<char>('a' + i % 26)) +
              std::string(1, static_cast<char>('a' + i / 26)) + oven.substr(0, i % 7u);
    }
    writeFile(*folder_ / "pages/d.html", many + "</body></html>");
    std::vector<std::string> options{"-R", root(), "-html", "-fsum"};
    for (const char* page : {"a", "b", "c", "d"}) {
      options.push_back(*folder_ / ("pages/" + std::string(page) + ".html"));
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

// The columns of a line.
std::vector<std::string> columns(const std::string& line) {
  std::istringstream stream(line);
  return {std::istream_iterator<std::string>(stream), {}};
}

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
  const std::vector<std::string> found = lines(shown({"words", "bri"}));
  ASSERT_EQ(found.size(), 4u);
  int number = std::stoi(columns(found[0])[0]);
  for (const char* word : {"brides", "bridges", "bright", "brings"}) {
    const std::vector<std::string> row =
        columns(found[static_cast<std::size_t>(number) - std::stoul(columns(found[0])[0])]);
    EXPECT_EQ(row[0], std::to_string(number++));
    EXPECT_EQ(row[1], word);
    EXPECT_EQ(row[2], "1");
    EXPECT_NEAR(std::stod(row[3]), 1.6094, 0.01);  // ln 5
  }
  EXPECT_EQ(lines(shown({"words"})).size(), std::stoul(columns(shown({}))[1]));
  EXPECT_EQ(shown({"words", "zz"}), "");
  EXPECT_EQ(shown({"words", "0"}), "");
}

TEST_F(DumpTest, ShowsTheRowOfAWord) {
  const std::vector<std::string> row = lines(shown({"row", "Bread"}));
  ASSERT_EQ(row.size(), 3u);
  EXPECT_NE(row[0].find("2 documents, idf 0.9163"), std::string::npos) << row[0];  // ln 2.5
  EXPECT_EQ(columns(row[1]), (std::vector<std::string>{"0", "3"}));
  EXPECT_EQ(columns(row[2]), (std::vector<std::string>{"1", "1"}));
}

TEST_F(DumpTest, ShowsDocuments) {
  const std::vector<std::string> all = lines(shown({"docs"}));
  ASSERT_EQ(all.size(), 4u);
  for (int i = 0; i < 4; ++i) {
    const std::vector<std::string> line = columns(all[static_cast<std::size_t>(i)]);
    const std::string name =
        *folder_ / ("pages/" + std::string(1, static_cast<char>('a' + i)) + ".html");
    EXPECT_EQ(line[0], std::to_string(i));
    EXPECT_EQ(line[1], "2048");
    EXPECT_EQ(line[2], std::to_string(fileBytes(name).size()));
    EXPECT_EQ(line[5], name);
  }
  EXPECT_EQ(columns(all[0])[3], "255");  // shorter than the least length
  const std::string one = shown({"doc", "1"});
  for (const char* part : {"header    45\n", "title     Tides\n", "type      2048\n"}) {
    EXPECT_NE(one.find(part), std::string::npos) << part << one;
  }
}

TEST_F(DumpTest, ShowsFieldsDigestsAndStems) {
  EXPECT_EQ(shown({"fields", "1"}), "title     Tides\nurl       " + (*folder_ / "pages/b.html") +
                                        "\nsummary   The tide brings salt; bread needs ...  \n");
  // Frequencies 2 and 1 of idf ln 5, against 1 of ln 2.5; the title counts too.
  const std::vector<std::string> digest = lines(shown({"digest", "1"}));
  std::map<std::string, double> scores;
  double before = 1;
  double length = 0;
  for (const std::string& line : digest) {
    const double score = std::stod(columns(line)[0]);
    EXPECT_LE(score, before);
    EXPECT_GT(score, 0);
    before = score;
    length += score * score;
    scores[columns(line)[2]] = score;
    EXPECT_EQ(columns(shown({"words", columns(line)[2]}))[0], columns(line)[1]);
  }
  EXPECT_NEAR(length, 1, 0.001);
  EXPECT_NEAR(scores["salt"], 2 * scores["tide"], 0.0001);
  EXPECT_NEAR(scores["bread"] / scores["tide"], 0.9163 / 1.6094, 0.0005);

  // The rarer word comes first.
  const std::vector<std::string> boats = lines(shown({"stem", "boat"}));
  ASSERT_EQ(boats.size(), 2u);
  EXPECT_EQ(columns(boats[0]), (std::vector<std::string>{"boats", "1.6094"}));
  EXPECT_EQ(columns(boats[1]), (std::vector<std::string>{"boat", "0.9163"}));
}

TEST_F(DumpTest, RefusesInOneLine) {
  const auto refused = [](const std::string& index, const std::string& command) {
    const ProgramRun result = dump(index, split(command, ' '));
    EXPECT_EQ(result.status, 1) << command;
    EXPECT_EQ(lines(result.errors).size(), 1u) << command << result.errors;
  };
  for (const char* command : {"", "words", "docs", "fields 0", "digest 0", "stem bread"}) {
    refused(*folder_ / "missing", command);
  }
  for (const char* command :
       {"row unheard", "doc 4", "doc -1", "doc 99999999999", "doc 1x", "doc", "fields 4",
        "digest 4", "digest -1", "stem unheard", "words a b", "sing"}) {
    refused(root(), command);
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
